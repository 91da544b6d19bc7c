' Every refusal of the library's own, as a script sees it.
Dim vesk, plain, other, rs, none, text, flag, number, id, manualID, name
Set vesk = OpenSession("Keeper")
Const sop1 = "User5010522091231"
Const memo = "User4011525162254"
Const unissued = "User4090424141019"
Const shopFloor = "User2033125160001"
Const withoutRights = "User7"

' Somebody who may nothing.
Set rs = vesk.User.Record(withoutRights)
rs("Password") = "sample"
rs.Update
name = rs("UserName").Value
rs.Close
vesk.Execute "Update VeskProfiles Set Rights = '" & String(255, "0") & "' Where UserID = '" & withoutRights & "'"
Set plain = OpenSession(name)
Check "nobody else", plain.DataServer.Profile.UserID, withoutRights
On Error Resume Next

' Opening.
vesk.DataServer.Config.Store "DatabaseVersion", "02.00"
Set other = CreateObject("KvVesk.clsVesk")
other.OpenConnection "Data Source=" & registerPath
CheckRaised "2501", App(2501), "OpenConnection", "The Vesk Database needs to be converted to version: 02.01"
vesk.DataServer.Config.Store "DatabaseVersion", "03.00"
Set other = CreateObject("KvVesk.clsVesk")
other.OpenConnection "Data Source=" & registerPath
CheckRaised "2502", App(2502), "OpenConnection", "Vesk needs to be updated to use this database.02.01"
vesk.DataServer.Config.Store "DatabaseVersion", "02.01"
vesk.DataServer.Config.Store "Version", "1.003.005"
Set other = CreateObject("KvVesk.clsVesk")
other.OpenConnection "Data Source=" & registerPath
CheckRaised "2503", App(2503), "OpenConnection", "The user/action datasource needs to be converted."
vesk.DataServer.Config.Store "Version", "1.003.006"
Set other = CreateObject("KvVesk.clsVesk")
other.Login "Keeper", "sample"
CheckRaised "2505", App(2505), "Login", "Vesk is unconnected to datasource"
other.Login "Keeper", "wrong", "Data Source=" & registerPath
CheckRaised "2506, logging in", App(2506), "Login", "UserName or Password is incorrect"
other.CloseSession
CheckNothingRaised "a session that nobody logged in to"

' Documents in manuals.
plain.DocumentManualRelation shopFloor, sop1
CheckRaised "2529", App(2529), "DocumentManualRelation", "Unable to add document to manual due to user access restrictions"
plain.DocumentManualRelation shopFloor, sop1, True
CheckRaised "2528", App(2528), "DocumentManualRelation", "Unable to remove document from manual due to user access restrictions"
vesk.DocumentManualRelation shopFloor, memo
CheckRaised "2513", App(2513), "DocumentManualRelation", "This Document is uncontrolled.  Only Controlled documents may be added to a manual."
vesk.DocumentManualRelation shopFloor, unissued
CheckRaised "2514", App(2514), "DocumentManualRelation", "Only Documents with a current revision may be added to a manual"
vesk.DocumentManualRelation "User1033125160000", sop1
CheckRaised "2506", App(2506), "DocumentManualRelation", "The Document is already in this manual"
vesk.DocumentManualRelation shopFloor, sop1, True
CheckRaised "2507", App(2507), "DocumentManualRelation", "The Document is not part of the manual"

' Owners and approvers.
plain.OwnsRelation sop1, "User3"
CheckRaised "2530", App(2530), "OwnsRelation", "Unable to add user to documents owner list due to user access restrictions"
vesk.OwnsRelation sop1, "User5"
CheckRaised "2508", App(2508), "OwnsReleation", "This user is already an owner of this document"
vesk.OwnsRelation sop1, "User3", True
CheckRaised "2509", App(2509), "OwnsRelation", "This user is not an owner of this document"
plain.ApprovesRelation sop1, "User3"
CheckRaised "2532", App(2532), "ApprovesRelation", "You do not have the right to assign or remove approvers for this document"
vesk.ApprovesRelation memo, "User3"
CheckRaised "2511", App(2511), "ApprovesRelation", "This document is uncontrolled.  Only controlled documents have approval lists.)"
vesk.ApprovesRelation sop1, "User1"
CheckRaised "2510", App(2510), "ApprovesRelation", "This user is already in the approval list for this document"
vesk.ApprovesRelation sop1, "User4", True
CheckRaised "2512", App(2512), "ApprovesRelation", "This user is not in the approval list for this document"

' Documents to users.
number = 1
plain.DocumentUserRelation sop1, "User3", True, False, number
CheckRaised "2531, release", App(2531), "DocumentUserRelation", "You do not have the right to release documents to users"
plain.DocumentUserRelation sop1, "User3", True, True, number
CheckRaised "2531, collect", App(2531), "DocumentUserRelation", "You do not have the right to collect documents from users"
plain.DocumentUserRelation sop1, "User3", False, False, number
CheckRaised "2531, others' lists", App(2531), "DocumentUserRelation", "You do not have the right to add documents to other user's personal lists"
plain.DocumentUserRelation sop1, "User3", False, True, number
CheckRaised "2531, from others' lists", App(2531), "DocumentUserRelation", "You do not have the right to remove documents from other user's personal lists"
plain.DocumentUserRelation sop1, withoutRights, False, False, number
CheckRaised "2531, the own list", App(2531), "DocumentUserRelation", "You do not have the right to add documents to your personal list"
plain.DocumentUserRelation sop1, withoutRights, False, True, number
CheckRaised "2531, from the own list", App(2531), "DocumentUserRelation", "You do not have the right to remove documents from your personal list"
Check "the number stays", number, 1
vesk.DocumentUserRelation memo, "User3", True, False, number
CheckRaised "2515", App(2515), "DocumentUserRelation", "This is an uncontrolled document.  Only controlled documents may be released to users"
vesk.DocumentUserRelation unissued, "User3", True, False, number
CheckRaised "2516", App(2516), "DocumentUserRelation", "Only Documents with a current revision may be released to users."
vesk.DocumentUserRelation "", "", True, True, 99999
CheckRaised "2517", App(2517), "DocumentUserRelation", "That release is no longer present in system"
vesk.DocumentUserRelation "", "", True, True, 0
CheckRaised "2518", App(2518), "DocumentUserRelation", "Unable to return released document without ReleaseID"
vesk.DocumentUserRelation sop1, "User4", False, False, number
vesk.DocumentUserRelation sop1, "User4", False, False, number
CheckRaised "2519", App(2519), "DocumentUserRelation", "This document is already in this users personal list"

' Manuals to users.
plain.ManualUserRelation shopFloor, "User3", True, "7", False
CheckRaised "2531, release a manual", App(2531), "ManualUserRelation", "You do not have the right to release manuals to users"
plain.ManualUserRelation shopFloor, "User3", True, "7", True
CheckRaised "2531, collect a manual", App(2531), "ManualUserRelation", "You do not have the right to collect manuals from users"
plain.ManualUserRelation shopFloor, "User3", False, "", False
CheckRaised "2531, a manual for others", App(2531), "ManualUserRelation", "You do not have the right to add manuals to other user's personal lists"
plain.ManualUserRelation shopFloor, "User3", False, "", True
CheckRaised "2531, a manual from others", App(2531), "ManualUserRelation", "You do not have the right to remove manuals from other user's personal lists"
plain.ManualUserRelation shopFloor, withoutRights, False, "", False
CheckRaised "2531, a manual for oneself", App(2531), "ManualUserRelation", " You do not have the right to add manuals to your personal list"
plain.ManualUserRelation shopFloor, withoutRights, False, "", True
CheckRaised "2531, a manual from oneself", App(2531), "ManualUserRelation", " You do not have the right to remove manuals from your personal list"
vesk.ManualUserRelation "none", "User3", True, "7", False
CheckRaised "2520", App(2520), "ManualUserRelation", "This manual has no contents.  Only manuals that have contents may be released to users."
vesk.ManualUserRelation shopFloor, "User3", True, "77", True
CheckRaised "2521", App(2521), "ManualUserRelation", "This user does not have this manual"
vesk.ManualUserRelation shopFloor, "User4", False, "", False
vesk.ManualUserRelation shopFloor, "User4", False, "", False
CheckRaised "2523", App(2523), "ManualUserRelation", "This user already has this manual"
vesk.Execute "Insert Into ManualContents (ManualID, DocumentID, [Position]) Values ('hollow', 'none', 1)"
vesk.ManualUserRelation "hollow", "User3", True, "1", False
CheckRaised "2522", App(2522), "ManualUserRelation", "Unable to add this manual to this user"

' Actions that cannot be reached.
Set other = CreateObject("KvVesk.clsVesk")
Set rs = vesk.ActionRecord()
Err.Clear
other.SendActions rs
CheckRaised "2524", App(2524), "Vesk.SendActions", "Unable to connect to Action System"
other.GetActions "User3"
CheckRaised "2525", App(2525), "GetActions", "Unable to connect to Action System"
other.HasActions "User3"
CheckRaised "2526", App(2526), "Vesk.HasActions", "Unable to connect to Action System"
other.CompleteCloseAction "1", Now
CheckRaised "2527", App(2527), "CompleteCloseAction", "Unable to connect to Action System"
vesk.SetExternalActionSystem True
CheckRaised "2550", App(2550), "SetExternalActionSystem", "Valid Connection String Required"
vesk.SetExternalActionSystem True, "Data Source=" & registerPath & ".none"
text = Err.Description
Check "a database of users that is not there", Left(text, 41), "Unable to connect to external Database :" & vbCr
Err.Clear

' Documents, in a set and in the register.
Set rs = vesk.GetRecordset("Select * From Documents Where DocumentID = '" & memo & "'")
Set none = vesk.GetRecordset("Select * From Documents Where DocumentID = ''")
vesk.Document.LoadData sop1, text, text, text, text, text, text, text, text, text, flag, text, flag, number, rs
CheckRaised "2601", App(2601), "LoadDocumentData", "Document is not found in current Recordset"
vesk.Document.LoadData sop1, text, text, text, text, text, text, text, text, text, flag, text, flag, number, none
CheckRaised "2602", App(2602), "LoadDocumentData", "No Documents found in current Recordset"
vesk.Document.LoadData "none", text, text, text, text, text, text, text, text, text, flag, text, flag, number
CheckRaised "2603", App(2603), "LoadDocumentData", "Document is not found in datafile"
vesk.Document.SaveData sop1, "t", "n", "", "", "", "", "", False, True, "", rs
CheckRaised "2604", App(2604), "LoadDocumentData", "Document is not found in current Recordset"
vesk.Document.SaveData sop1, "t", "n", "", "", "", "", "", False, True, "", none
CheckRaised "2605", App(2605), "LoadDocumentData", "No Documents found in current Recordset"
vesk.Document.SaveData "none", "t", "n", "", "", "", "", "", False, True, ""
CheckRaised "2606", App(2606), "LoadDocumentData", "Document is not found in datafile"
rs.Close
none.Close

' Manuals.
Set rs = vesk.GetRecordset("Select * From Manuals Where ManualID = '" & shopFloor & "'")
Set none = vesk.GetRecordset("Select * From Manuals Where ManualID = ''")
vesk.Manual.LoadData "x", text, text, text, text, text, text, rs
CheckRaised "2701", App(2701), "LoadManualData", "Manual is not found in current Recordset"
vesk.Manual.LoadData "x", text, text, text, text, text, text, none
CheckRaised "2702", App(2702), "LoadManualData", "No Manuals found in current Recordset"
vesk.Manual.LoadData "x", text, text, text, text, text, text
CheckRaised "2703", App(2703), "LoadManualData", "Manual is not found in datafile"
vesk.Manual.SaveData "x", "n", "", "", "", "", "", rs
CheckRaised "2704", App(2704), "SaveManualData", "Manual is not found in current Recordset"
vesk.Manual.SaveData "x", "n", "", "", "", "", "", none
CheckRaised "2705", App(2705), "SaveManualData", "No Manuals found in current Recordset"
vesk.Manual.SaveData "x", "n", "", "", "", "", ""
CheckRaised "2706", App(2706), "SaveManualData", "Manual is not found in datafile"
vesk.Manual.RepositionContents "x", sop1, 1
CheckRaised "2730", App(2730), "Reposition Contents", "That Manual has no contents"

' Revisions.
Set rs = vesk.Revision.GetRevRS(19)
Set none = vesk.GetRecordset("Select * From Documents Where DocumentID = '" & memo & "'")
vesk.Revision.SetAsCurrentRevision rs, none, False
CheckRaised "40", App(40), "SetAsCurrentRevision", "The Document is not present in the current set."
vesk.Revision.SaveData 19, "C", "", "", "", "Z:\no such file"
CheckRaised "55666", 55666, "Revision.SaveData", "No File Found at present location.  To save this revision data a valide file location is required."
rs.Close
none.Close

Err.Clear
plain.CloseSession
vesk.CloseSession
CheckNothingRaised "closing"
Finish

Function App(code)
  App = -2147221504 + code
End Function
