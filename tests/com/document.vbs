' Documents.
Dim vesk, document, rs, sql, id, release, query, server
Dim title, number, level, effective, user1, user2, user3, user4, notes, secured, location, controlled, current
Set vesk = OpenSession("Keeper")
Set document = vesk.Document
Const sop1 = "User5010522091231"
Const sop2 = "User5011222104000"
Const shopFloor = "User2033125160001"

Check "OpenConnection on the root's profile", document.OpenConnection("", vesk.DataServer.Profile), Empty
Check "Login", document.Login(), Empty
Set server = document.DataServer
Set document.DataServer = server
Check "DataServer", document.DataServer, server
Set document.oVesk = vesk
Check "oVesk", document.oVesk, vesk

Set rs = document.Records(, , "Select DocumentNumber From Documents Where DocumentNumber Like 'WI-%' Order By DocumentNumber")
Check "Records over a statement", FirstColumn(rs), "WI-101,WI-102,WI-201,WI-202"
rs.Close
Check "Records without anything", document.Records(), Nothing
Set rs = document.Record(sop1)
Check "Record", rs("DocumentTitle").Value, "Control of Documents and Records"
rs.Close

document.LoadData sop1, title, number, level, effective, user1, user2, user3, user4, notes, secured, location, controlled, current
Check "LoadData, title", title, "Control of Documents and Records"
Check "LoadData, number", number, "SOP-001"
Check "LoadData, level", level, "C"
Check "LoadData, effective date", effective, "4/22/2024"
Check "LoadData, a field", user1, "Quality"
Check "LoadData, secured", secured, False
Check "LoadData, controlled", controlled, True
Check "LoadData, current revision", current, 19
Check "SaveData", document.SaveData(sop1, title, number, user1, user2, user3, user4, "kept", False, True, location), 0
Check "SaveData and Value", document.Value(sop1, "DocumentNotes"), "kept"
Check "Value of none", document.Value("none", "DocumentNotes"), Empty
document.SetValue sop1, "DocumentNotes", "set"
Check "SetValue", document.IDValue(2, "DocumentNotes"), "set"
document.SetValue sop1, "DocumentNotes", Null
Check "SetValue, Null", document.Value(sop1, "DocumentNotes"), Null
Check "HasCurrentRevision", document.HasCurrentRevision(sop1), True

id = document.Add("User0", "Cleaning the Tanks", "WI-300", "Production", "", "", "", "", 0, "", "A", "3/9/2025", True, True, False)
Check "Add", Left(id, 5), "User0"
Check "Add, its revision", document.Value(id, "RevisionLevel"), "A"
Check "Add, without the optional ones", document.Value(document.Add("User1", "Loose Notes", "N-1", "", "", "", "", "", 0, "", "", "", False), "Controlled"), False
document.MakeUnControlled id
Check "MakeUnControlled", document.HasCurrentRevision(id), True
document.Delete id, True
Check "Delete", document.Value(id, "DocumentTitle"), Empty

Check "IntoManual", document.IntoManual(sop1, shopFloor), True
Check "Manuals", FirstColumn(document.Manuals(sop1)), "User1033125160000,User3033125160002,User2033125160001"
Check "Manuals, all fields", document.Manuals(sop1, True).Fields.Count > 2, True
Check "OutofManual", document.OutofManual(sop1, shopFloor), True
Check "AddOwner", document.AddOwner(sop1, "User3"), True
Check "Owners", FirstColumn(document.Owners(sop1)), "User5,User3"
Check "Owners, all fields", document.Owners(sop1, True, True).Fields("UserName").Value, "Ingrid Solheim"
Check "RemoveOwner", document.RemoveOwner(sop1, "User3"), True
Check "AddApprover", document.AddApprover(sop2, "User9"), True
Set rs = document.Approvers(sop2)
Check "Approvers, without a place first", rs("UserID").Value, "User9"
Check "Approvers", rs.RecordCount, 3
rs.Close
Check "ChangeListOrder", document.ChangeListOrder(sop2, "User9", "User1"), False
Check "Approvers, all fields", FirstColumn(vesk.GetRecordset("Select UserID From Routing Where DocumentID = '" & sop2 & "' Order By ListOrder")), "User2,User9,User1"
Check "Approvers' records", document.Approvers(sop2, True).RecordCount, 3
Check "RemoveApprover", document.RemoveApprover(sop2, "User9"), True
Check "DocRevisions", document.DocRevisions(sop1).RecordCount, 3

release = 0
Check "ReleaseCopy", document.ReleaseCopy(sop1, "User12", release), True
Check "ReleaseCopy gives the release", release > 0, True
Check "Copies", document.Copies(sop1).RecordCount > 0, True
Check "Copies, all fields", document.Copies(sop1, True).Fields(0).Name, "ID"
Check "CollectCopy", document.CollectCopy(release), True
release = 0
Check "AddUser", document.AddUser(sop1, "User12", release), True
Check "Users", InStr(Users(sop1), "User12") > 0, True
Check "Users, all fields", document.Users(sop1, True).RecordCount > 0, True
Check "PersonalDocuments", document.PersonalDocuments("User12").RecordCount > 0, True
Check "Personals", document.Personals("User12").RecordCount, document.Personals("User12", True, True).RecordCount
Check "Personals, hard copies only", document.Personals("User12", False).RecordCount + document.Personals("User12", True, False).RecordCount, document.Personals("User12").RecordCount
Check "RemoveUser", document.RemoveUser(release), True

Set query = document.AddQuery()
query.SetQueryValue "QueryName", "Procedures"
query.SetQueryValue "Field2", "SOP"
query.SetQueryValue "Field2Key", 1
document.SaveQuery query
Set query = document.GetQuery(query.id)
Check "GetQuery", query.GetQueryValue("Field2"), "SOP"
sql = ""
Set rs = document.Records(query.id, "DocumentNumber", sql, "DocumentNumber")
Check "Records over a query", FirstColumn(rs), "SOP-001,SOP-002,SOP-003,SOP-004,SOP-005"
Check "Records gives the condition", sql, "Where DocumentNumber Like '%SOP%'"
rs.Close
document.DeleteQuery query.id
Check "DeleteQuery", document.GetQuery(query.id).GetQueryValue("Field2"), Null

vesk.CloseSession
Finish

' The users of a document's virtual copies, joined.
Function Users(docid)
  Dim list
  Users = ""
  Set list = vesk.Document.Users(docid)
  Do Until list.EOF
    Users = Users & list("UserID").Value & ","
    list.MoveNext
  Loop
End Function
