' Users, what they hold, and settings.
Dim vesk, user, rs, id, sql, query, release, copy, profile, name, alias, password, title, email, workgroup
Set vesk = OpenSession("Keeper")
Set user = vesk.User
Set profile = vesk.DataServer.Profile
Const sop1 = "User5010522091231"
Const shopFloor = "User2033125160001"
Set user.oVesk = vesk
Check "oVesk", user.oVesk, vesk

Check "Records, all", user.Records(-1).RecordCount, 13
Check "Records without anything", user.Records(), Nothing
Check "Record", user.Record("User4").Fields("UserName").Value, "Sean O'Brien"
Check "GetRecordset", user.GetRecordset("Select * From Users"), Nothing
Check "UserID", user.UserID("Mei Okafor"), "User3"
Check "UserIDFromID", user.UserIDFromID(Asked(vesk, "Select ID From Users Where UserID = 'User3'")), "User3"
Check "getUserName", user.getUserName("User6"), "Pavel Novák"
Set rs = vesk.GetRecordset("Select * From Users Order By UserID")
Check "LoadUser", user.LoadUser(rs, "User3", name, alias, password, title, email, workgroup), True
Check "LoadUser, name", name, "Mei Okafor"
Check "LoadUser, workgroup", Kind(workgroup), "String"
rs.MoveFirst
Check "SaveUser", user.SaveUser(rs, "User3", name, "Mei", "", "Engineer", "mei@example.com"), True
Check "SaveUser, alias", Asked(vesk, "Select Alias From Users Where UserID = 'User3'"), "Mei"
id = user.NewUser(rs, "Nina Costa", "Nina", "", "", "", "")
Check "NewUser", Asked(vesk, "Select UserID From Users Where UserName = 'Nina Costa'"), id
rs.Close
Check "DeleteUser", user.DeleteUser(id), True
Check "DeleteUser, gone", Asked(vesk, "Select UserID From Users Where UserName = 'Nina Costa'"), "(no row)"
Set rs = vesk.GetRecordset("Select UserID From Users Where UserID = 'User2' Or UserID = 'User5'")
Check "GetTheseUsers", user.GetTheseUsers(rs).RecordCount, 2

release = user.ReleaseDoc("User12", sop1, True)
Check "ReleaseDoc", release > 0, True
Check "HardCopies", user.HardCopies("User12").RecordCount, Asked(vesk, "Select Count(*) From Personals Where UserID = 'User12' and HardCopy <> 0")
Check "HardCopiesForViewDoc", user.HardCopiesForViewDoc("User12").Fields(0).Name, "ID"
Check "HardCopiesForViewMan", user.HardCopiesForViewMan("User12").RecordCount > 0, True
Check "ReturnDoc", user.ReturnDoc(CStr(release)), True
copy = user.ReleaseMan("User11", shopFloor, False)
Check "ReleaseMan", Kind(copy), "String"
Check "VirtualCopies", user.VirtualCopies("User11").RecordCount > 0, True
Check "VirtualCopiesForViewDoc", user.VirtualCopiesForViewDoc("User11").RecordCount > 0, True
Check "VirtualCopiesForViewMan", InStr(Manuals("User11"), "Shop Floor Manual") > 0, True
Check "ReturnMan", user.ReturnMan("User11", shopFloor, False), True
Check "SetOwner", user.SetOwner("User3", sop1), True
Check "UserIsOwner", user.UserIsOwner("User3", sop1), True
Check "Owns", user.Owns("User3").RecordCount > 0, True
Check "OwnsForView", user.OwnsForView("User3").Fields.Count > 5, True
Check "UnSetOwner", user.UnSetOwner("User3", sop1), True
Check "SetApprover", user.SetApprover("User3", sop1), True
Check "UserIsApprover", user.UserIsApprover("User3", sop1), True
Check "Approves", user.Approves("User3").RecordCount > 0, True
Check "ApprovesForView", user.ApprovesForView("User3").Fields.Count > 5, True
Check "UnSetApprover", user.UnSetApprover("User3", sop1), True

Check "ChangeWorkGroup", user.ChangeWorkGroup("User3", "2"), Empty
Check "WorkGroup", user.WorkGroup(2), "Production"
Check "WorkgroupID", user.WorkgroupID("Production"), "2"
Check "Workgroups", user.Workgroups().RecordCount, 3
user.SaveLabel profile, "TypeUser00", "1"
Check "SaveLabel and Labels", user.Labels(profile).Fields.Count > 0, True
user.AddKeyword profile, "category", "drawing"
Check "AddKeyword", InStr(Keywords(), "drawing") > 0, True
user.DeleteKeyword profile, "category", "drawing"
Check "DeleteKeyword", InStr(Keywords(), "drawing"), 0
user.NewAction "Subject", "Description", "User0", "User3"
Check "NewAction", vesk.HasActions("User99"), False
Check "ActionUserQueries", user.ActionUserQueries("User3", "2").RecordCount, 0

Set query = user.NewQuery()
query.SetQueryValue "UserName", "Novák"
query.SetQueryValue "UserNameOperator", 1
user.SaveQuery query
Set query = user.GetQuery(query.id)
Check "GetQuery", query.GetQueryValue("UserName"), "Novák"
sql = ""
Check "Records over a query", user.Records(query.id, "UserName", sql, "UserName").Fields("UserName").Value, "Pavel Novák"
Check "Records gives the condition", InStr(sql, "Novák") > 0, True
vesk.CloseSession
Finish

Function Keywords()
  Dim list
  Keywords = ""
  Set list = vesk.User.Keywords(profile, "category")
  Do Until list.EOF
    Keywords = Keywords & list("Keyword").Value & ","
    list.MoveNext
  Loop
End Function

Function Manuals(userID)
  Dim list
  Manuals = ""
  Set list = vesk.User.VirtualCopiesForViewMan(userID)
  Do Until list.EOF
    Manuals = Manuals & list("ManualName").Value & ","
    list.MoveNext
  Loop
End Function
