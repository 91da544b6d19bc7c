' What goes in and what comes out of arguments: by reference, left out, of other kinds, Null, Empty and Nothing, dates,
' truth values, letters of all scripts.
Dim vesk, document, rs, sql, text, list, release, number, values, nothingYet, copied, day
Set vesk = OpenSession("Keeper")
Set document = vesk.Document
Const sop1 = "User5010522091231"

' By reference: a variable that was Empty gets a value of the declared kind, one that holds another kind keeps it
' unless the operation writes it.
Dim title, level, effective, user1, user2, user3, user4, notes, secured, location, controlled, current
title = 5
document.LoadData sop1, title, number, level, effective, user1, user2, user3, user4, notes, secured, location, controlled, current
Check "a variable of another kind is overwritten", title, "Control of Documents and Records"
document.LoadData "User8031025154500", title, number, level, sql, user1, user2, user3, user4, notes, secured, location, controlled, current
Check "text that is empty", TypeName(sql) & sql, "String"
Check "False", secured, False
Check "-1", CInt(controlled), -1
Check "0", CInt(secured), 0
Check "a whole number of 32 bits", TypeName(current), "Long"
number = 19
Check "a number in a variable", vesk.Revision.GetRevRS(number).RecordCount, 1
Check "it keeps its kind", TypeName(number), "Integer"
text = "19"
Check "text for a number", vesk.Revision.GetRevRS(text).RecordCount, 1
Check "text stays text", TypeName(text), "String"
Check "a fraction for a number, rounded to even", vesk.urDescription(2.5), vesk.urDescription(2)
Check "a number for text", document.Value(sop1, "DocumentNumber") & vesk.User.UserID(12), "SOP-001"
Check "a truth value for a number", vesk.urDescription(True), ""
Check "a number for a truth value", vesk.Version(1), "1.0.0"
Check "text for a truth value", vesk.Version("True"), "1.0.0"
Check "Empty for text", vesk.User.UserID(nothingYet), ""
Check "Empty for a truth value", vesk.Version(Empty), "1.0"
Set rs = vesk.GetRecordset("Select DocumentID From Documents Where DocumentID = '" & sop1 & "'")
Check "a field for text", document.Value(rs("DocumentID"), "DocumentNumber"), "SOP-001"
sql = ""
Set list = document.Records(0, "", sql)
Check "nothing is written", sql, ""
Check "a result that is no object", list, Nothing

' Expressions get nothing back.
release = 0
Check "a variable", document.ReleaseCopy(sop1, "User12", release), True
Check "is written", release > 0, True
number = release
Check "an expression", document.CollectCopy(release + 0), True
Check "is not", release, number
values = Array(0, 0)
Check "an element", document.ReleaseCopy(sop1, "User12", values(1)), True
Check "collected", document.CollectCopy(Asked(vesk, "Select Max(ReleaseID) From Personals")), True

' Left out.
Check "left out in the middle", vesk.Releases("User3", , , , , , True).RecordCount, vesk.Releases("User3", "", "", 0, 0, 0, True).RecordCount
Check "defaults that are True", document.Personals("User3").RecordCount, document.Personals("User3", True, True).RecordCount
Check "all left out", document.Records(), Nothing
Check "a set that is left out", document.SaveData(sop1, "T", "SOP-001", "", "", "", "", "", False, True, ""), 0
Set rs = document.Record(sop1)
Check "and one that is not", document.SaveData(sop1, "Control of Documents and Records", "SOP-001", "", "", "", "", "", False, True, "", rs), 0
Check "which stands on it", rs("DocumentTitle").Value, "Control of Documents and Records"
Check "Nothing for a set", document.SaveData(sop1, "Control of Documents and Records", "SOP-001", "", "", "", "", "", False, True, "", Nothing), 0

' Null, Empty and Nothing are three things.
document.SetValue sop1, "DocumentNotes", Null
Check "Null is stored", document.Value(sop1, "DocumentNotes"), Null
Check "Empty where there is no row", document.Value("none", "DocumentNotes"), Empty
Check "Nothing where there is no set", vesk.User.GetRecordset("Select * From Users"), Nothing
document.SetValue sop1, "DocumentNotes", ""
Check "text is stored", Kind(document.Value(sop1, "DocumentNotes")), "String"
document.SetValue sop1, "DocumentNotes", rs("DocumentNumber")
Check "a field's value is stored", document.Value(sop1, "DocumentNotes"), "SOP-001"

' Dates.
day = #3/9/2025#
document.SetValue sop1, "EffectiveDate", day
Check "a date", document.Value(sop1, "EffectiveDate"), day
Check "is a date", TypeName(document.Value(sop1, "EffectiveDate")), "Date"
document.SetValue sop1, "EffectiveDate", "12/31/1899"
Check "a date as text", document.Value(sop1, "EffectiveDate"), #12/31/1899#
document.SetValue sop1, "EffectiveDate", #3/9/2025 6:00:00 AM#
Check "with a time", document.Value(sop1, "EffectiveDate"), #3/9/2025 6:00:00 AM#

' Kinds of numbers.
Set rs = CreateObject("KvVesk.kvRecordset")
rs.Fields.Append "Short", 2
rs.Fields.Append "Long", 3
rs.Fields.Append "Single", 4
rs.Fields.Append "Double", 5
rs.Fields.Append "Truth", 11
rs.Open
rs.AddNew
rs("Short") = CInt(-7)
rs("Long") = CLng(70000)
rs("Single") = CSng(1.5)
rs("Double") = 1.25
rs("Truth") = True
rs.Update
Check "16 bits", TypeName(rs("Short").Value) & rs("Short").Value, "Integer-7"
Check "32 bits", TypeName(rs("Long").Value) & rs("Long").Value, "Long70000"
Check "single", TypeName(rs("Single").Value) & rs("Single").Value, "Single1.5"
Check "double", TypeName(rs("Double").Value) & rs("Double").Value, "Double1.25"
Check "truth", TypeName(rs("Truth").Value) & CInt(rs("Truth").Value), "Boolean-1"
rs("Long") = CByte(200)
Check "a byte", rs("Long").Value, 200
rs("Double") = CCur(12.5)
Check "currency", rs("Double").Value, 12.5
rs("Truth") = False
Check "False, too", rs("Truth").Value, False

' Letters. The file's own are of the host's code page; the register has others.
Check "one's own letters", vesk.User.UserID("Lucía Ferrer"), "User9"
text = Asked(vesk, "Select DocumentNotes From Documents Where DocumentNumber = 'WI-102'")
Check "of other scripts, counted", Len(text), 10
document.SetValue sop1, "DocumentNotes", text
Check "come back", document.Value(sop1, "DocumentNotes"), text
Check "as they were", Asked(vesk, "Select Count(*) From Documents Where DocumentNotes Like '" & text & "'"), 2
Check "and are found in any case", vesk.User.UserID("LUCÍA ferrer"), "User9"
vesk.CloseSession
Finish
