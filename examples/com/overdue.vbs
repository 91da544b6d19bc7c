' Lists the controlled documents that have no revision in force.
'   cscript //nologo overdue.vbs REGISTER USER     the password is in the variable KVVESK_PASSWORD
Option Explicit
Dim vesk, rs, shell
Set shell = CreateObject("WScript.Shell")
Set vesk = CreateObject("KvVesk.clsVesk")
vesk.OpenConnection "Data Source=" & WScript.Arguments(0)
vesk.Login WScript.Arguments(1), shell.Environment("Process")("KVVESK_PASSWORD")

Set rs = vesk.GetRecordset("Select DocumentNumber, DocumentTitle From Documents " & _
    "Where Controlled = True And IsNull(CurrentRevID) Order By DocumentNumber")
Do Until rs.EOF
  WScript.Echo rs("DocumentNumber").Value & "  " & rs("DocumentTitle").Value
  rs.MoveNext
Loop
rs.Close
vesk.CloseSession
