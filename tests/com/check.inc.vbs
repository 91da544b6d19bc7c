' What the scripts here are tried with; the runner puts it in front of each. A script is given the path of a register of
' its own, the sample register. It prints a line for each check that fails, and how many there were.
Option Explicit
Dim checks, failures, registerPath
checks = 0
failures = 0
registerPath = WScript.Arguments(0)

' What kind of value it is; numbers of all widths are of one kind.
Function Kind(value)
  If IsObject(value) Then
    Kind = "Object"
    If value Is Nothing Then Kind = "Nothing"
    Exit Function
  End If
  Kind = TypeName(value)
  If Kind = "Integer" Or Kind = "Long" Or Kind = "Single" Or Kind = "Double" Then Kind = "Number"
End Function

Function Shown(value)
  Dim what
  what = Kind(value)
  If what = "Object" Or what = "Nothing" Or what = "Null" Or what = "Empty" Then
    Shown = what
  Else
    Shown = what & " <" & value & ">"
  End If
End Function

Function Same(a, b)
  Dim what
  what = Kind(a)
  Same = False
  If what <> Kind(b) Then Exit Function
  If what = "Object" Then
    Same = a Is b
  ElseIf what = "Nothing" Or what = "Null" Or what = "Empty" Then
    Same = True
  Else
    Same = (a = b)
  End If
End Function

' That a value is the one expected, of the same kind.
Sub Check(what, got, wanted)
  checks = checks + 1
  If Same(got, wanted) Then Exit Sub
  failures = failures + 1
  WScript.Echo "FAILED " & what & ": " & Shown(got) & " where " & Shown(wanted) & " is right"
End Sub

' That the statement before has raised this, and nothing else. The text is the whole description.
Sub CheckRaised(what, number, source, description)
  Dim gotNumber, gotSource, gotDescription
  gotNumber = Err.Number
  gotSource = Err.Source
  gotDescription = Err.Description
  Err.Clear
  Check what & ", number", gotNumber, number
  Check what & ", source", gotSource, source
  Check what & ", description", gotDescription, description
End Sub

' The same of the number alone.
Sub CheckNumber(what, number)
  Dim got
  got = Err.Number
  Err.Clear
  Check what, got, number
End Sub

Sub CheckNothingRaised(what)
  CheckRaised what, 0, "", ""
End Sub

Sub Finish()
  WScript.Echo checks & " checks, " & failures & " failed"
  If failures > 0 Then WScript.Quit 1
  WScript.Quit 0
End Sub

' A session with the register, logged in.
Function OpenSession(userName)
  Set OpenSession = CreateObject("KvVesk.clsVesk")
  OpenSession.OpenConnection "Data Source=" & registerPath
  OpenSession.Login userName, "sample"
End Function

' The first column of a list, joined.
Function FirstColumn(rs)
  FirstColumn = ""
  Do Until rs.EOF
    If FirstColumn <> "" Then FirstColumn = FirstColumn & ","
    FirstColumn = FirstColumn & rs.Fields(0).Value
    rs.MoveNext
  Loop
End Function

' One value of the register.
Function Asked(vesk, sql)
  Dim rs
  Set rs = vesk.GetRecordset(sql)
  If rs.EOF Then
    Asked = "(no row)"
  Else
    Asked = rs.Fields(0).Value
  End If
  rs.Close
End Function
