' Record sets, their fields, and what stands for what.
Dim vesk, rs, field, names, mark, rows, copy, free, value
Set vesk = OpenSession("Keeper")
Set rs = vesk.GetRecordset("Select * From Users Order By ID")

Check "State", rs.State, 1
Check "EditMode", rs.EditMode, 0
Check "CursorType", rs.CursorType, 1
Check "LockType", rs.LockType, 3
Check "EOF", rs.EOF, False
Check "BOF", rs.BOF, False
Check "RecordCount", rs.RecordCount, 13
Check "AbsolutePosition", rs.AbsolutePosition, 1
Check "Supports", rs.Supports(&H1000400), True
Check "Supports what it does not", rs.Supports(&H10000), False

' Every way to a value.
Check "Fields(name).Value", rs.Fields("UserName").Value, "Keeper"
Check "Fields.Item(name).Value", rs.Fields.Item("username").Value, "Keeper"
Check "rs(name).Value", rs("UserName").Value, "Keeper"
Check "rs(name)", "" & rs("UserName"), "Keeper"
value = rs("UserName")
Check "a value by assignment", value, "Keeper"
Check "rs(place).Value", rs(0).Name, "ID"
Check "Fields(place)", rs.Fields(1).Name, rs.Fields.Item(1).Name
Check "the same field", rs("UserName"), rs.Fields("USERNAME")

Set field = rs("UserName")
Check "Field.Name", field.Name, "UserName"
Check "Field.Type", field.Type, 202
Check "Field.DefinedSize", field.DefinedSize, 100
Check "Field.ActualSize", field.ActualSize, 6
Check "Field.Attributes", (field.Attributes And 4) <> 0, True
names = ""
For Each field In rs.Fields
  If names <> "" Then names = names & ","
  names = names & field.Name
Next
Check "For Each over the fields", Left(names, 18), "ID,UserID,UserName"
Check "Fields.Count", rs.Fields.Count, UBound(Split(names, ",")) + 1

rs.MoveLast
Check "MoveLast", rs("UserID").Value, "User12"
rs.MovePrevious
Check "MovePrevious", rs("UserID").Value, "User11"
rs.MoveFirst
rs.MoveNext
Check "MoveNext", rs("UserID").Value, "User1"
mark = rs.Bookmark
rs.Move 2
Check "Move", rs("UserID").Value, "User3"
rs.Move 1, mark
Check "Move from a bookmark", rs("UserID").Value, "User2"
rs.Bookmark = mark
Check "Bookmark", rs("UserID").Value, "User1"
rs.AbsolutePosition = 4
Check "AbsolutePosition, set", rs("UserID").Value, "User3"
rs.MoveFirst
rs.Find "UserName = 'sean o''brien'"
Check "Find", rs("UserID").Value, "User4"
rs.Find "UserID < 'User4'", 1, -1
Check "Find backwards", rs("UserID").Value, "User3"
rs.Find "UserName = 'nobody'", 0, 1, mark
Check "Find nothing", rs.EOF, True

' Writing.
rs.MoveFirst
rs.Find "UserID = 'User3'"
rs("Title") = "Engineer"
Check "assigned to the set", rs("Title").Value, "Engineer"
Check "EditMode while it is pending", rs.EditMode, 1
Check "Field.OriginalValue", rs("Title").OriginalValue, "Metrologist"
rs.CancelUpdate
Check "CancelUpdate", rs("Title").Value, "Metrologist"
rs.Fields("Title").Value = "Auditor"
rs.Fields("Alias") = "Mei"
rs.Update
Check "Update", Asked(vesk, "Select Title From Users Where UserID = 'User3'"), "Auditor"
rs.AddNew
rs("UserID") = "User99"
rs("UserName") = "Somebody"
rs.Update
Check "AddNew", rs.RecordCount, 14
rs.Delete
Check "Delete", Asked(vesk, "Select UserID From Users Where UserID = 'User99'"), "(no row)"
rs.Requery
Check "Requery", rs.RecordCount, 13

rs.Filter = "UserID = 'User3' Or UserID = 'User4'"
Check "Filter", rs.Filter & rs.RecordCount, "UserID = 'User3' Or UserID = 'User4'2"
rs.Filter = 0
Check "Filter, taken away by its constant", rs.Filter & rs.RecordCount, "13"
rs.Filter = "UserID = 'User3'"
rs.Filter = "0"
Check "Filter, taken away by its constant as text", rs.Filter & rs.RecordCount, "13"
rs.Filter = "UserID = 'User3'"
rs.Filter = ""
rs.Sort = "UserName DESC"
Check "Sort", rs.Sort & rs("UserName").Value, "UserName DESCTomas Brandt"
rs.Sort = ""
Set copy = rs.Clone()
copy.MoveLast
Check "Clone has a position of its own", copy("UserID").Value = rs("UserID").Value, False
copy.Close
Check "Close", copy.State, 0
rs.MoveFirst
rows = rs.GetRows(2, , Array("UserID", "UserName"))
Check "GetRows, fields", UBound(rows, 1), 1
Check "GetRows, rows", UBound(rows, 2), 1
Check "GetRows, a value", rows(1, 1), "Ada Lindqvist"
Check "GetRows moves on", rs("UserID").Value, "User2"
rows = rs.GetRows()
Check "GetRows, the rest", UBound(rows, 2), 10
rs.MoveFirst
rows = rs.GetRows(1, , "UserID")
Check "GetRows of one field", rows(0, 0), "User0"
rs.Close

' Built field by field.
Set free = CreateObject("KvVesk.kvRecordset")
free.Fields.Append "Name", 202, 20
free.Fields.Append "Count", 3
free.Fields.Append "When", 7
free.CursorType = 3
free.LockType = 3
free.Open
free.AddNew
free("Name") = "gauge"
free("Count") = 7
free("When") = #3/9/2025 6:00:00 AM#
free.Update
Check "free-standing, text", free("Name").Value, "gauge"
Check "free-standing, number", free("Count").Value, 7
Check "free-standing, date", free("When").Value, #3/9/2025 6:00:00 AM#
free("Count") = Null
free.Update
Check "free-standing, Null", free("Count").Value, Null
vesk.CloseSession
Finish
