' What the root leads to: data server, configuration, connection, profile, stored queries, users and the sender.
Dim vesk, server, config, connection, profile, queries, users, rs, affected, id, other, actions
Set vesk = OpenSession("Keeper")

Set server = vesk.DataServer
Set config = server.Config
Check "Config.Value", config.Value("Document"), "Document"
Check "Config.Value, Null", config.Value("UserDBLocation"), Empty
config.Store "Revision", "Issue"
Check "Config.Store", config.Value("revision"), "Issue"
Check "Config.Label", config.Label("Revision", 0), "Issue"

Set connection = server.Connection
Set rs = connection.OpenRecordset("Select UserID From Users Order By ID", 1, 3, 3)
Check "OpenRecordset", rs.RecordCount, 13
Check "OpenRecordset, the cursor", rs.CursorType, 1
rs.Close
Set rs = connection.OpenRecordset("Select UserID From Users", , 1)
Check "OpenRecordset, read-only", rs.LockType, 1
rs.Close
affected = 0
connection.Execute "Update Users Set Title = 'x' Where UserID = 'User3' Or UserID = 'User4'", affected, 1
Check "Connection.Execute", affected, 2
connection.Execute "Delete From Users Where UserID = 'none'"
connection.BeginTrans
connection.Execute "Update Users Set Title = 'outer' Where UserID = 'User3'"
connection.BeginTrans
connection.Execute "Update Users Set Title = 'inner' Where UserID = 'User3'"
connection.RollbackTrans
Check "RollbackTrans, the inner one alone", Asked(vesk, "Select Title From Users Where UserID = 'User3'"), "outer"
connection.BeginTrans
connection.Execute "Update Users Set Title = 'both' Where UserID = 'User4'"
connection.CommitTrans
connection.CommitTrans
Check "CommitTrans, what the outer one holds", Asked(vesk, "Select Title From Users Where UserID = 'User3'"), "outer"
Check "CommitTrans, what the inner one holds", Asked(vesk, "Select Title From Users Where UserID = 'User4'"), "both"
connection.BeginTrans
connection.Execute "Update Users Set Title = 'kept?' Where UserID = 'User4'"
connection.BeginTrans
connection.Execute "Update Users Set Title = 'kept?' Where UserID = 'User3'"
connection.CommitTrans
connection.RollbackTrans
Check "RollbackTrans, an inner one that was committed", Asked(vesk, "Select Title From Users Where UserID = 'User3'"), "outer"
Check "RollbackTrans, the outer one", Asked(vesk, "Select Title From Users Where UserID = 'User4'"), "both"
' An operation is a mark in the transaction, and goes with it.
Set rs = vesk.User.Records(-1)
connection.BeginTrans
id = vesk.User.NewUser(rs, "Passing", "", "", "", "", "")
Check "BeginTrans, an operation in it", Asked(vesk, "Select UserName From Users Where UserID = '" & id & "'"), "Passing"
connection.RollbackTrans
Check "RollbackTrans, an operation in it", Asked(vesk, "Select UserName From Users Where UserID = '" & id & "'"), "(no row)"
rs.Close
On Error Resume Next
connection.CommitTrans
CheckNumber "CommitTrans without a transaction", 3219
connection.RollbackTrans
CheckNumber "RollbackTrans without a transaction", 3219
On Error GoTo 0
server.StatementLog = ""
Check "StatementLog", server.StatementLog, ""

Set profile = server.Profile
Check "Profile.UserID", profile.UserID, "User0"
Check "Profile.UserName", profile.UserName, "Keeper"
Check "Profile.Rights", Len(profile.Rights), 255
Check "Profile.HasRight", profile.HasRight(1), True
Check "Profile.Administrator", profile.Administrator, -1
Check "Profile.OwnerOverride", profile.OwnerOverride, -1
profile.Store "UserOptions", "1000000"
Check "Profile.Value", profile.Value("UserOptions"), "1000000"
Check "Profile.ConnectionString", profile.ConnectionString, "Data Source=" & registerPath
Check "Profile as text", "" & profile, "Data Source=" & registerPath

Set queries = vesk.Document.DataServer.Queries
id = queries.Add("Mine")
Check "Queries.Add and Queries.Open", queries.Open(id).Fields("QueryName").Value, "Mine"
queries.Delete id
Check "Queries.Delete", queries.Open(id).RecordCount, 0

Set users = vesk.MainUser
Check "MainUser.UserValue", users.UserValue("User3", "UserName"), "Mei Okafor"
Check "MainUser.UserValue of none", users.UserValue("none", "UserName"), Empty
Check "MainUser.UserRecords of a statement", users.UserRecords("Select UserID From Users Where UserID = 'User3'").Fields("UserName").Value, "Mei Okafor"
Set rs = vesk.GetRecordset("Select UserID From Users Where UserID = 'User5'")
Check "MainUser.UserRecords of a set", users.UserRecords(rs).Fields("UserName").Value, "Ingrid Solheim"
Check "MainUser.ApplicationCode", users.ApplicationCode, "D2"
users.ApplicationCode = "D9"
Check "MainUser.ApplicationCode, changed", users.ApplicationCode, "D9"
Check "MainUser.DataServer", users.DataServer.Profile, users.Profile
Check "MainUser.Profile", users.Profile.UserID, "User0"
Set actions = vesk.ActionRecord()
actions.AddNew
actions("AssigneeID") = "User12"
actions("Subject") = "by the sender"
Check "Sender.Send", users.Sender().Send(actions), 1
id = Asked(vesk, "Select ActionID From Actions Where Subject = 'by the sender'")
users.CloseAction CStr(id), #1/2/2025#
Check "CloseAction, completed", Asked(vesk, "Select DateCompleted From Actions Where ActionID = " & id), #1/2/2025#
Check "CloseAction, not closed", Asked(vesk, "Select DateClosed From Actions Where ActionID = " & id), Null
users.CloseAction CStr(id), #1/2/2025#, #1/3/2025#
Check "CloseAction, closed", Asked(vesk, "Select DateClosed From Actions Where ActionID = " & id), #1/3/2025#

' Ones of a client's own.
Set profile = CreateObject("KvVesk.kvProfile")
profile.Rights = "101"
Check "Profile.Rights, set", profile.HasRight(3), True
Check "Profile.HasRight of one not held", profile.HasRight(2), False
Set server = CreateObject("KvVesk.kvDataServer")
Check "a closed data server", server.Connection, Nothing
server.OpenConnection "Data Source=" & registerPath, profile
server.SetTables "VeskConfig", "VeskGroups", "DocumentQuerys", , , "VeskProfiles"
Check "SetTables", server.Config.Value("Document"), "Document"
Check "DataServer.Profile", server.Profile, profile
Set other = CreateObject("KvVesk.kvProfile")
Set server.Profile = other
Check "DataServer.Profile, set", server.Profile, other
Set server.Profile = profile
server.Close
Check "DataServer.Close", server.Connection, Nothing

Set users = CreateObject("KvVesk.kvUser")
users.OpenConnection "Data Source=" & registerPath
users.Login "Keeper", "sample"
Check "MainUser.Login", users.Profile.UserName, "Keeper"
users.Login "Keeper", "wrong", users.Profile
Check "MainUser.Login with a wrong password", users.Profile.UserID, ""
Set connection = users.DataServer.Connection
connection.Close
users.Profile.Close
Check "Profile.Close", users.Profile.UserID, ""
vesk.CloseSession
Finish
