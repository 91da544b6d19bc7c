' What is raised by hosts, record sets and statements, as a script sees it: number, source and description. The library's
' own refusals are in refusals.vbs.
Dim vesk, document, rs, other, set1, text
Set vesk = CreateObject("KvVesk.clsVesk")
On Error Resume Next
Const sop1 = "User5010522091231"
Const memo = "User4011525162254"
Const shopFloor = "User2033125160001"

vesk.Login "Keeper", "sample"
CheckRaised "nothing to open", -2147218999, "Login", "Vesk is unconnected to datasource"
vesk.OpenConnection "Data Source=" & registerPath & ".none"
CheckRaised "no file", -2147467259, "kvData", "There is no such file: '" & registerPath & ".none'"
vesk.OpenConnection "Data Source=" & registerPath
CheckNothingRaised "opening"
vesk.Login "Keeper", "wrong"
CheckRaised "a wrong password", -2147218998, "Login", "UserName or Password is incorrect"
vesk.Login "Keeper", "sample"
CheckNothingRaised "logging in"
Set document = vesk.Document

' The library's own.
vesk.DocumentManualRelation shopFloor, memo
CheckRaised "an uncontrolled document", -2147218991, "DocumentManualRelation", "This Document is uncontrolled.  Only Controlled documents may be added to a manual."
vesk.DocumentManualRelation shopFloor, "User4090424141019"
CheckRaised "no current revision", -2147218990, "DocumentManualRelation", "Only Documents with a current revision may be added to a manual"
vesk.DocumentManualRelation "User1033125160000", sop1
CheckRaised "in the manual already", -2147218998, "DocumentManualRelation", "The Document is already in this manual"
vesk.DocumentManualRelation shopFloor, sop1, True
CheckRaised "not in the manual", -2147218997, "DocumentManualRelation", "The Document is not part of the manual"
document.LoadData "none", text, text, text, text, text, text, text, text, text, 0, text, 0, 0
CheckRaised "no such document", -2147218901, "LoadDocumentData", "Document is not found in datafile"
vesk.Manual.RepositionContents "none", sop1, 1
CheckRaised "no contents", -2147218774, "Reposition Contents", "That Manual has no contents"
vesk.Revision.SaveData 19, "C", "", "", "", "Z:\no such file"
CheckRaised "a plain number of the library's", 55666, "Revision.SaveData", "No File Found at present location.  To save this revision data a valide file location is required."
vesk.SetExternalActionSystem True
CheckRaised "no connection string", -2147218954, "SetExternalActionSystem", "Valid Connection String Required"

' The host's: their own small numbers.
vesk.SetAppOption 0, True
CheckRaised "a bad argument", 5, "KvVesk", "Invalid procedure call or argument"
vesk.UserAccess 0
CheckRaised "no right", 5, "KvVesk", "Invalid procedure call or argument"
vesk.urDescription 40000
CheckRaised "a number that is too large", 6, "KvVesk", "Overflow"
vesk.urDescription "many"
CheckRaised "text for a number", 13, "KvVesk", "Type mismatch"
vesk.Document.SaveQuery Nothing
CheckRaised "no object", 91, "KvVesk", "Object variable or With block variable not set"
vesk.Document.Value Null, "DocumentTitle"
CheckRaised "Null for text", 94, "KvVesk", "Invalid use of Null"
Set set1 = vesk.Document.DataServer.Queries.Open(vesk.Document.AddQuery().id)
Set other = CreateObject("KvVesk.clsDocumentQuery")
other.LoadQuery set1
other.LoadQuery set1
CheckRaised "a key twice", 457, "KvVesk", "This key is already associated with an element of this collection"
vesk.SendActions CreateObject("Scripting.FileSystemObject")
CheckRaised "an object of somebody else's", 13, "KvVesk", "Type mismatch"
vesk.SendActions document
CheckRaised "an object of another class", 13, "KvVesk", "Type mismatch"
document.SetValue sop1, "DocumentNotes", document
CheckRaised "an object where a value goes", 3421, "kvData", "Application uses a value of the wrong type for the current operation."

' Those of record sets.
Set rs = vesk.GetRecordset("Select * From Users Order By ID")
rs.Find "UserName = 'a' And Title = 'b'"
CheckRaised "more than one comparison", 3001, "kvData", "Arguments are of the wrong type, are out of acceptable range, or are in conflict with one another."
rs.MoveLast
rs.MoveNext
text = rs("UserName").Value
CheckRaised "no current row", 3021, "kvData", "Either BOF or EOF is True, or the current record has been deleted. Requested operation requires a current record."
rs.MoveFirst
rs("Title") = "x"
rs.Close
CheckRaised "closing an edit", 3219, "kvData", "Operation is not allowed in this context."
rs.CancelUpdate
text = rs.Fields("Colour").Value  ' Wine forgets the error of rs("Colour")
CheckRaised "no such field", 3265, "kvData", "Item cannot be found in the collection corresponding to the requested name or ordinal. Colour"
Set other = vesk.GetRecordset("Select Distinct Title From Users")
other("Title") = "x"
CheckRaised "a field that cannot be written", 3251, "kvData", "Current Recordset does not support this operation on this column or row. Title"
Set other = vesk.GetRecordset("Select ID, EffectiveDate From Documents")
other("EffectiveDate") = "soon"
CheckRaised "a value of the wrong kind", 3421, "kvData", "Application uses a value of the wrong type for the current operation."
rs.Close
text = rs.EOF
CheckRaised "a closed set", 3704, "kvData", "Operation is not allowed when the object is closed."
Set other = CreateObject("KvVesk.kvRecordset")
other.Open
CheckRaised "no connection", 3709, "kvData", "The connection cannot be used to perform this operation. It is either closed or invalid in this context."

' Those of statements.
vesk.GetRecordset "Select Colour From Users"
CheckRaised "an unknown column", -2147217904, "kvData", "No value given for one or more required parameters. (position 8: 'Colour')"
vesk.GetRecordset "Select * From Colours"
CheckRaised "an unknown table", -2147217865, "kvData", "The database engine cannot find the input table or query. Make sure it exists and that its name is spelled correctly. (position 15: 'Colours')"
vesk.Execute "Selekt"
CheckRaised "no statement", -2147217900, "kvData", "Invalid SQL statement; expected 'DELETE', 'INSERT', 'SELECT', or 'UPDATE'. (position 1: 'Selekt')"
document.Record "x' or 'a'='a"
CheckRaised "a value that changes the statement", -2147217900, "kvData", "Syntax error (missing operator) in query expression. (position 2: '' or 'a'='a')"

' Those of late binding; the texts are the host's own.
vesk.NoSuchMember
CheckNumber "no such member", 438
vesk.Version
CheckNumber "an argument that is not optional", 449
vesk.Version True, True
CheckNumber "too many arguments", 450
vesk.CloseSession
CheckNothingRaised "closing"
vesk.CloseSession
CheckRaised "closing twice", 91, "KvVesk", "Object variable or With block variable not set"
Finish
