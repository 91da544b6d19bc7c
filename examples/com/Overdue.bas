' Lists the controlled documents that have no revision in force in the active sheet. Needs a reference to
' "KvVesk 1.0 Type Library"; without one, declare the variables As Object and create the session with
' CreateObject("KvVesk.clsVesk").
Option Explicit

Public Sub Overdue()
  Dim vesk As New KvVesk.clsVesk
  Dim rs As KvVesk.kvRecordset
  Dim row As Long

  On Error GoTo Failed
  vesk.OpenConnection "Data Source=" & Environ$("KVVESK_REGISTER")
  vesk.Login Environ$("KVVESK_USER"), Environ$("KVVESK_PASSWORD")
  Set rs = vesk.GetRecordset("Select DocumentNumber, DocumentTitle From Documents " & _
      "Where Controlled = True And IsNull(CurrentRevID) Order By DocumentNumber")
  Do Until rs.EOF
    row = row + 1
    ActiveSheet.Cells(row, 1).Value = rs("DocumentNumber").Value
    ActiveSheet.Cells(row, 2).Value = rs("DocumentTitle").Value
    rs.MoveNext
  Loop
  rs.Close
  vesk.CloseSession
  Exit Sub

Failed:
  ' The library's own numbers begin at vbObjectError + 2501.
  MsgBox Err.Description, vbExclamation, Err.Source
  ' Lets go of everything, whatever has been opened by then.
  On Error Resume Next
  vesk.CloseSession
End Sub
