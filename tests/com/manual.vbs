' Manuals.
Dim vesk, manual, rs, sql, id, query, server, name, user1, user2, user3, user4, notes
Set vesk = OpenSession("Keeper")
Set manual = vesk.Manual
Const shopFloor = "User2033125160001"
Const calibration = "User3033125160002"
Const sop1 = "User5010522091231"

Check "OpenConnection on the root's profile", manual.OpenConnection("", vesk.DataServer.Profile), Empty
Check "Login", manual.Login(), Empty
Set server = manual.DataServer
Set manual.DataServer = server
Check "DataServer", manual.DataServer, server
Set manual.oVesk = vesk
Check "oVesk", manual.oVesk, vesk

Check "Records, all", FirstColumn(manual.Records(-1, , , "ManualName")), "Calibration Handbook,Quality Manual,Shop Floor Manual"
Check "Records over a statement", FirstColumn(manual.Records(0, "", "Select ManualName From Manuals Where ID = 1")), "Quality Manual"
Check "Record", manual.Record(calibration).Fields("ManualName").Value, "Calibration Handbook"
manual.LoadData shopFloor, name, user1, user2, user3, user4, notes
Check "LoadData", name, "Shop Floor Manual"
manual.SaveData shopFloor, name, "Production", user2, user3, user4, "for the shop floor"
Check "SaveData and Value", manual.Value(shopFloor, "ManUserMemo"), "for the shop floor"
Check "IDValue", manual.IDValue(2, "ManUser1"), "Production"
id = manual.Add("Green Manual", "", "", "", "", "")
Check "Add", Left(id, 5), "User0"
Check "Add, its name", manual.Value(id, "ManualName"), "Green Manual"
Check "HasContents", manual.HasContents(id), False
Check "SetValue of none", manual.SetValue("none", "ManUserMemo", "x"), Empty
Check "AddDocument", manual.AddDocument(id, sop1), True
Check "AddDocument, another", manual.AddDocument(id, "User5011222104000"), True
Check "Contents", FirstColumn(Numbers(id)), "SOP-001,SOP-002"
manual.RepositionContents id, sop1, 2
Check "RepositionContents", FirstColumn(Numbers(id)), "SOP-002,SOP-001"
Check "Contents as a list, with the manual", manual.Contents(id, True, True).Fields("ManualID").Value, id
Check "NextCopyNumber of the first", manual.NextCopyNumber(id), "0001"
Check "ReleaseCopy", manual.ReleaseCopy(id, "User12", "7"), True
Check "NextCopyNumber", manual.NextCopyNumber(id), "8"
Check "DuplicateCopyNumber", manual.DuplicateCopyNumber(id, "7"), True
manual.ChangeCopyNumber id, "7", "9"
Check "ChangeCopyNumber", manual.DuplicateCopyNumber(id, "7"), False
Check "Copies", manual.Copies(id).Fields("CopyNumber").Value, "9"
Check "Copies, all fields", manual.Copies(id, True).Fields("UserName").Value, "Shop Floor Terminal"
Check "CollectCopy", manual.CollectCopy(id, "User12", "9"), True
Check "AddUser", manual.AddUser(id, "User3"), True
Check "Users", manual.Users(id).Fields("UserID").Value, "User3"
Check "Users, all fields", manual.Users(id, True).Fields("UserName").Value, "Mei Okafor"
Check "PersonalManuals", InStr(Names("User3"), "Green Manual") > 0, True
Check "PersonalManuals, hard copies only", InStr(FirstColumn(manual.PersonalManuals("User3", False, True)), id), 0
Check "PersonalManualsForView", manual.PersonalManualsForView("User3", True, False).RecordCount > 0, True
Check "RemoveUser", manual.RemoveUser(id, "User3"), True
Check "RemoveDocument", manual.RemoveDocument(id, sop1), True
manual.Delete id
Check "Delete", manual.Value(id, "ManualName"), Empty

Set query = manual.NewQuery()
query.SetQueryValue "Field1", "Manual"
query.SetQueryValue "Field1Key", 1
manual.SaveQuery query
Set query = manual.GetQuery(query.id)
Check "GetQuery", query.GetQueryValue("Field1"), "Manual"
sql = ""
Check "Records over a query", FirstColumn(manual.Records(query.id, , sql, "ManualName")), "Quality Manual,Shop Floor Manual"
Check "Records gives the condition", sql, "Where ManualName Like '%Manual%'"
sql = ""
Set rs = manual.RecordsWithContents(query.id, "", sql)
Check "RecordsWithContents", rs.RecordCount, Asked(vesk, "Select Count(*) From ManualContents, Manuals Where ManualContents.ManualID = Manuals.ManualID and ManualName Like '%Manual%'")
vesk.CloseSession
Finish

Function Numbers(manualID)
  Set Numbers = vesk.Manual.Contents(manualID)
  Set Numbers = vesk.GetRecordset("Select DocumentNumber From ManualContents Inner Join Documents On ManualContents.DocumentID = Documents.DocumentID Where ManualID = '" & manualID & "' Order By Position")
End Function

Function Names(userID)
  Dim list
  Names = ""
  Set list = vesk.Manual.PersonalManuals(userID)
  Do Until list.EOF
    Names = Names & list("ManualName").Value & ","
    list.MoveNext
  Loop
End Function
