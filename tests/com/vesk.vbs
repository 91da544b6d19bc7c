' The root object.
Dim vesk, rs, affected, release, sent, actions, users
Set vesk = CreateObject("KvVesk.clsVesk")
Check "Version", vesk.Version(False), "1.0"
Check "Version with the revision", vesk.Version(True), "1.0.0"
Check "OpenConnection", vesk.OpenConnection("Data Source=" & registerPath), False
Check "Login", vesk.Login("Keeper", "sample"), Empty

' The same object each time.
Check "Document", vesk.Document, vesk.Document
Check "Manual", vesk.Manual, vesk.Manual
Check "MainUser", vesk.MainUser, vesk.MainUser
Check "User", vesk.User, vesk.User
Check "DataServer", vesk.DataServer, vesk.DataServer
Check "Revision", vesk.Revision, vesk.Revision
Check "the way back", vesk.Document.oVesk, vesk

Set rs = vesk.GetRecordset("Select DocumentNumber From Documents Where DocumentNumber Like 'WI-2%' Order By DocumentNumber")
Check "GetRecordset", FirstColumn(rs), "WI-201,WI-202"
rs.Close
Check "Execute", vesk.Execute("Update Documents Set DocumentNotes = 'gauges' Where DocumentNumber Like 'WI-2%'"), 2
Check "Execute with its option", vesk.Execute("Delete From Documents Where DocumentNumber = 'none'", 1), 0

Check "urDescription", vesk.urDescription(52), "Change which workgroup a user is in"
Check "urDescription beyond the last", vesk.urDescription(134), "End"
Check "uoDescription", vesk.uoDescription(1), ""
Check "aoDescription", vesk.aoDescription(1), ""
Check "orDescription", vesk.orDescription(9), "Edit the document notes field"
Check "UserAccess", vesk.UserAccess(1), True
Check "UserAccess by the second argument", vesk.UserAccess(, 100), True
Check "OwnerAccess", vesk.OwnerAccess(9), True
Check "OwnerAccess as configured", vesk.OwnerAccess(9, 2000), False
vesk.SetOwnerAccess 9, True
Check "SetOwnerAccess", vesk.OwnerAccess(9, 2000), True
vesk.SetUserOption 5, True
Check "SetUserOption and UserOption", vesk.UserOption(5), True
Check "UserOption by the second argument", vesk.UserOption(0, 6), False
vesk.SetAppOption 8, True
Check "SetAppOption and AppOption", vesk.AppOption(8), True
vesk.SetAppOption 8, False
Check "AppOption by the second argument", vesk.AppOption(1, 8), False

' Shop Floor Manual, Control of Documents and Records.
affected = 0
Check "DocumentManualRelation", vesk.DocumentManualRelation("User2033125160001", "User5010522091231", False, affected), True
Check "DocumentManualRelation gives the holders", affected, Asked(vesk, "Select Count(*) From Personals Where ManualID = 'User2033125160001' and DocumentID = 'User5010522091231'")
Check "DocumentManualRelation, removing", vesk.DocumentManualRelation("User2033125160001", "User5010522091231", True), True
Check "OwnsRelation", vesk.OwnsRelation("User5010522091231", "User3"), True
Check "OwnsRelation, removing", vesk.OwnsRelation("User5010522091231", "User3", True), True
Check "ApprovesRelation", vesk.ApprovesRelation("User5010522091231", "User3"), True
Check "ApprovesRelation, removing", vesk.ApprovesRelation("User5010522091231", "User3", True), True
release = 0
Check "DocumentUserRelation", vesk.DocumentUserRelation("User5010522091231", "User3", True, False, release), True
Check "DocumentUserRelation gives the release", release > 0, True
Check "ReleaseValue", vesk.ReleaseValue(release, "UserID"), "User3"
Check "ReleaseValue of none", vesk.ReleaseValue(0, "UserID"), Empty
Check "DocumentUserRelation, collecting", vesk.DocumentUserRelation("", "", True, True, release), True
Check "ReleaseValue of one that is gone", vesk.ReleaseValue(release, "UserID"), Empty
Check "ManualUserRelation", vesk.ManualUserRelation("User3033125160002", "User11", True, "77", False), True
Set rs = vesk.Releases("User11", "User3033125160002", , , , , True)
Check "Releases", rs.RecordCount, vesk.Manual.Contents("User3033125160002").RecordCount
Check "Releases, a column", rs.Fields("CopyNumber").Value, "77"
rs.Close
Check "ManualUserRelation, collecting", vesk.ManualUserRelation("User3033125160002", "User11", True, "77", True), True
Check "Releases without arguments", vesk.Releases().RecordCount > 0, True

Set actions = vesk.ActionRecord()
Check "ActionRecord", actions.EOF, True
actions.AddNew
actions.Fields("AssigneeID").Value = "User12"
actions("ReferenceID") = vesk.DataServer.Config.Value("DBID")
actions.Fields("Subject").Value = "Look at the gauges"
actions.Update
sent = vesk.SendActions(actions)
Check "SendActions", sent, 1
Set users = vesk.GetRecordset("Select UserID, UserName From Users Where UserID = 'User4' Or UserID = 'User5'")
Check "SendActions to users", vesk.SendActions(actions, users), 1
Check "HasActions", vesk.HasActions("User4"), True
Check "HasActions of nobody", vesk.HasActions("User99"), False
Set rs = vesk.GetActions("User12")
Check "GetActions", rs.Fields("Subject").Value, "Look at the gauges"
Check "CompleteCloseAction", vesk.CompleteCloseAction(CStr(rs.Fields("ActionID").Value), #3/9/2025#, #3/10/2025#), Empty
rs.Close
Check "GetActions without closed ones", vesk.GetActions("User12").RecordCount, 0
Set rs = vesk.GetActions("User12", True)
Check "GetActions with closed ones", rs.Fields("DateClosed").Value, #3/10/2025#
Check "SetExternalActionSystem", vesk.SetExternalActionSystem(False), True

vesk.CloseSession
Check "Document afterwards", vesk.Document, Nothing
Check "DataServer afterwards", vesk.DataServer, Nothing
Finish
