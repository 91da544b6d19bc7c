' Lists the hard copies that are not of the revision in force: who has which.
'   cscript //nologo stale_copies.vbs REGISTER USER PASSWORD
Option Explicit
Dim vesk, copies

Set vesk = CreateObject("KvVesk.clsVesk")
' Success is that nothing is raised; the result of OpenConnection says nothing.
vesk.OpenConnection "Data Source=" & WScript.Arguments(0)
vesk.Login WScript.Arguments(1), WScript.Arguments(2)

Set copies = vesk.Releases(, , , , , , True)
Do Until copies.EOF
  If IsStale(copies) Then
    WScript.Echo vesk.User.getUserName(copies("UserID").Value) & vbTab & copies("DocumentNumber").Value & vbTab & _
                 copies("RevisionLevel").Value & vbTab & copies("CurrentRevisionLevel").Value
  End If
  copies.MoveNext
Loop
copies.Close
vesk.CloseSession

' A document without a revision in force has Null there, and no stale copies.
Function IsStale(copy)
  IsStale = False
  If Not IsNull(copy("CurrentRevID").Value) Then IsStale = copy("RevisionID").Value <> copy("CurrentRevID").Value
End Function
