' A register keeper's day, with the approvers' sessions in between.
Dim vesk, manual, document, revision, rs, id, revID, holder, holders, copies, before, approver, approvals, documents, name
Dim stale, release, number
Set vesk = OpenSession("Keeper")
Set manual = vesk.Manual
Set document = vesk.Document
Set revision = vesk.Revision
Const sop5 = "User3020822075502"
Const shopFloor = "User2033125160001"
Const staleCopies = "Select Count(*) From Personals Inner Join Documents On Personals.DocumentID = Documents.DocumentID Where Personals.RevisionID <> Documents.CurrentRevID"

' Approvers can log in, in their order, and are told.
For Each name In Array("User1", "User2", "User3")
  Set rs = vesk.User.Record(name)
  rs("Password") = "sample"
  rs.Update
  rs.Close
Next
For Each number In Array(4, 6, 7, 8, 10)
  vesk.SetAppOption number, True
Next
Check "an option of the register", vesk.AppOption(10), True

' The manual goes out as numbered copies to three people.
before = Asked(vesk, "Select Count(*) From Personals Where ManualID = '" & shopFloor & "'")
holders = Array("User8", "User9", "User10")
For Each holder In holders
  number = manual.NextCopyNumber(shopFloor)
  Check "the next copy is a new one, " & holder, manual.DuplicateCopyNumber(shopFloor, number), False
  Check "release to " & holder, manual.ReleaseCopy(shopFloor, holder, number), True
  Check "its number, " & holder, vesk.Releases(holder, shopFloor, , , , , True).Fields("CopyNumber").Value, number
Next
copies = manual.Contents(shopFloor).RecordCount
Check "every holder has every document", Asked(vesk, "Select Count(*) From Personals Where ManualID = '" & shopFloor & "'"), before + 3 * copies

' A document put into it afterwards goes to all of them.
Check "into the manual", document.IntoManual(sop5, shopFloor), True
For Each holder In holders
  Check "the new document follows, " & holder, Asked(vesk, "Select Count(*) From Personals Where ManualID = '" & shopFloor & "' And UserID = '" & holder & "' And DocumentID = '" & sop5 & "'"), 1
Next

' Its next revision is written, routed, approved in order, and put in force.
revID = revision.Add(sop5, "D", "", "", "Gauges are checked monthly", "", False, "User3")
Set rs = revision.GetRevRS(revID)
revision.RouteForApproval rs, False
rs.Update
Check "where it stands", revision.RevStatusDescription(rs), "Awaiting Approval from Mei Okafor"
rs.Close
Check "the last one may not decide yet", Decided("Ada Lindqvist", "User1"), False
Check "the first decides", Decided("Mei Okafor", "User3"), True
Check "the second decides", Decided("Tomas Brandt", "User2"), True
Check "the last decides", Decided("Ada Lindqvist", "User1"), True
For Each name In Array("User1", "User2", "User3")
  Check "an action was sent to " & name, vesk.HasActions(name), True
Next
Check "nobody's copy is stale yet", StaleOnPaper(sop5), 0
Set rs = revision.GetRevRS(revID)
Check "approved", rs("RevisionStatus").Value, 4
revision.SetAsCurrentRevision rs, documents, False
Check "in force", rs("RevisionStatus").Value, 1
rs.Close
Check "the document names it", document.Value(sop5, "CurrentRevID"), revID
Check "and its level", document.Value(sop5, "RevisionLevel"), "D"

' Now the paper copies of it are stale: who has which.
stale = StaleOnPaper(sop5)
Check "stale copies on paper", stale >= 3, True
Set rs = vesk.Releases("User8", , sop5, , , , True)
Check "what the holder has", rs("RevisionLevel").Value <> "D", True
release = rs("ReleaseID").Value
rs.Close

' One is collected and released again, at the revision in force.
Check "collected", document.CollectCopy(release), True
Check "gone", Asked(vesk, "Select ReleaseID From Personals Where ReleaseID = " & release), "(no row)"
release = 0
Check "released again", document.ReleaseCopy(sop5, "User8", release), True
Check "a release of its own", release > 0, True
Check "at the revision in force", vesk.ReleaseValue(release, "RevisionID"), revID
Check "one stale copy less", StaleOnPaper(sop5), stale - 1
vesk.CloseSession
Finish

' How many copies on paper are not of the document's revision in force.
Function StaleOnPaper(documentID)
  StaleOnPaper = Asked(vesk, staleCopies & " And Personals.HardCopy <> 0 And Personals.DocumentID = '" & documentID & "'")
End Function

' Whether a user, in a session of his own, was the one to approve the revision now, and did.
Function Decided(userName, userID)
  Dim own, current, list
  Set own = OpenSession(userName)
  Set current = own.Revision.GetRevRS(revID)
  Set list = own.Revision.GetRevApprovalList(revID)
  Decided = own.Revision.CanApprove(userID, revID, userID)
  If Decided Then
    Decided = own.Revision.ApproveRevision(current, userID, userID, list, True)
    If current.EditMode <> 0 Then current.Update
  End If
  current.Close
  list.Close
  own.CloseSession
End Function
