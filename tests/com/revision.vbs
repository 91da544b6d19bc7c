' Revisions and their approval.
Dim vesk, revision, server, id, rs, approvals, documents, text
Dim document, routing, status, level, user1, user2, effective, description, location, standing
Set vesk = OpenSession("Keeper")
Set revision = vesk.Revision
Const sop5 = "User3020822075502"

Check "OpenConnection on the root's profile", revision.OpenConnection("", vesk.DataServer.Profile), Empty
Check "Login", revision.Login(), Empty
Set server = revision.DataServer
Set revision.DataServer = server
Check "DataServer", revision.DataServer, server
Set revision.oVesk = vesk
Check "oVesk", revision.oVesk, vesk

id = revision.Add(sop5, "D", "", "", "Gauges are checked monthly", "", False, "User3")
Check "Add", id, 25
revision.SaveData id, "D1", "one", "", "Gauges are checked weekly", ""
Check "LoadRevisionData", revision.LoadRevisionData(id, document, routing, status, level, user1, user2, effective, description, location, standing, approvals), True
Check "LoadRevisionData, document", document, sop5
Check "LoadRevisionData, routing", routing, 0
Check "LoadRevisionData, status", status, 2
Check "LoadRevisionData, level", level, "D1"
Check "LoadRevisionData, a field", user1, "one"
Check "LoadRevisionData, description", description, "Gauges are checked weekly"
Check "LoadRevisionData, where it stands", standing, "Being Revised by Mei Okafor"
Check "LoadRevisionData, approvals", approvals.RecordCount, 0
Check "LoadRevisionData of none", revision.LoadRevisionData(999, document, routing, status, level, user1, user2, effective, description, location, standing, approvals), False
Check "LoadRevisionData of none leaves what was there", document, sop5
Check "GetRevFileName", revision.GetRevFileName(CStr(id)), ""
Check "GetRevFileName of none", revision.GetRevFileName("999"), Empty

Set rs = revision.GetRevRS(id)
Check "GetRevRS", rs("RevisionLevel").Value, "D1"
Check "RouteForApproval", revision.RouteForApproval(rs, False), Empty
rs.Update
Check "RevStatusDescription", revision.RevStatusDescription(rs), "Awaiting Approval from Mei Okafor"
Set approvals = revision.GetRevApprovalList(id)
Check "GetRevApprovalList", FirstColumn(vesk.GetRecordset("Select UserID From ApprovalRouting Where RevID = " & id & " Order By ListOrder")), "User3,User2,User1"
Check "approvals", revision.approvals(id).RecordCount, approvals.RecordCount
Check "CanApprove", revision.CanApprove("User0", id, "User3"), True
revision.SaveApprovalNotes "By whom?", "User3", id
Check "SaveApprovalNotes", Asked(vesk, "Select Notes From ApprovalRouting Where RevID = " & id & " and UserID = 'User3'"), "By whom?"
Set approvals = revision.GetRevApprovalList(id)
Check "RejectRevision", revision.RejectRevision(rs, "User3", "User3", approvals), True
rs.Update
Check "RejectRevision, the status", rs("RevisionStatus").Value, 5
Check "RouteForApproval, again", revision.RouteForApproval(rs, True), Empty
rs.Update
Set approvals = revision.GetRevApprovalList(id)
Check "ApproveRevision", revision.ApproveRevision(rs, "User3", "User3", approvals, False), True
rs.Update
Set approvals = revision.GetRevApprovalList(id)
Check "ApproveRevision by the second", revision.ApproveRevision(rs, "User0", "User2", approvals), True
Set approvals = revision.GetRevApprovalList(id)
Check "ApproveRevision by the last", revision.ApproveRevision(rs, "User0", "User1", approvals), True
rs.Update
Check "ApproveRevision, the status", rs("RevisionStatus").Value, 4
Set approvals = revision.GetRevApprovalList(id)
revision.NotifyNextapprover rs, approvals, False
rs.Update
Check "NotifyNextapprover", rs("RevisionStatus").Value, 4
revision.SetAsCurrentRevision rs, documents, False
Check "SetAsCurrentRevision", rs("RevisionStatus").Value, 1
Check "SetAsCurrentRevision gives the document", documents("CurrentRevID").Value, id
Check "SetUsersRevisionTo", revision.SetUsersRevisionTo("1", CStr(id)), False
Check "SetUsersRevisionTo, the copy", Asked(vesk, "Select RevisionID From Personals Where ReleaseID = 1"), id
Check "DeleteRevision", revision.DeleteRevision(15), True
Check "DeleteRevision, gone", Asked(vesk, "Select RevisionID From Revisions Where RevisionID = 15"), "(no row)"
vesk.CloseSession
Finish
