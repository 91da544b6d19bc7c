Attribute VB_Name = "StaleCopies"
' Lists the hard copies that are not of the revision in force in the Immediate window.
' In Tools, References: tick "KvVesk", the component's type library. Works in 64-bit Office.
Option Explicit

Public Sub ListStaleCopies(ByVal Register As String, ByVal UserName As String, ByVal Password As String)
  Dim vesk As KvVesk.clsVesk, copies As KvVesk.kvRecordset
  On Error GoTo Refused
  Set vesk = New KvVesk.clsVesk
  vesk.OpenConnection "Data Source=" & Register
  vesk.Login UserName, Password
  Set copies = vesk.Releases(HardCopies:=True)
  Do Until copies.EOF
    ' A document without a revision in force has Null there; a comparison with Null is not True.
    If copies("RevisionID").Value <> copies("CurrentRevID").Value Then
      Debug.Print vesk.User.getUserName(copies("UserID").Value), copies("DocumentNumber").Value, _
                  copies("RevisionLevel").Value, copies("CurrentRevisionLevel").Value
    End If
    copies.MoveNext
  Loop
  copies.Close
  vesk.CloseSession
  Exit Sub
Refused:
  MsgBox Err.Description, vbExclamation, Err.Source
End Sub
