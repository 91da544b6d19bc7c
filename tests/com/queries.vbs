' Saved queries, by the names of their own interface and by those of clsQuery.
Dim vesk, documentQuery, manualQuery, userQuery, blank, rs
Set vesk = OpenSession("Keeper")

Set documentQuery = CreateObject("KvVesk.clsDocumentQuery")
Check "GetQueryValue of nothing", documentQuery.GetQueryValue("Field1"), Empty
Set rs = vesk.Document.DataServer.Queries.Open(vesk.Document.AddQuery().id)
documentQuery.LoadQuery rs
Check "LoadQuery", documentQuery.GetQueryValue("QueryName"), "<<New Query>>"
documentQuery.SetQueryValue "Field1", "Gauge"
documentQuery.SetQueryValue "Field1Key", 1
documentQuery.SetQueryValue "DocType", 0
Check "JetSQL", documentQuery.JetSQL(), "Where Controlled <> 0 and DocumentTitle Like '%Gauge%'"
Check "JetSQL by its other name", documentQuery.clsquery_JetSQL(), documentQuery.JetSQL()
Check "CrystalSQL", documentQuery.CrystalSQL(), documentQuery.clsquery_CrystalSQL()
Check "CrystalSQL, something", Len(documentQuery.CrystalSQL()) > 0, True
documentQuery.SaveQuery rs
Check "SaveQuery", rs("Field1").Value, "Gauge"
Check "id", documentQuery.id(), rs("QueryID").Value
Check "clsquery_ID", documentQuery.clsquery_ID(), rs("QueryID").Value
documentQuery.clsquery_SetQueryValue "Field1", "Washing"
Check "clsquery_SetQueryValue and clsquery_GetQueryValue", documentQuery.clsquery_GetQueryValue("Field1"), "Washing"
documentQuery.clsquery_SaveQuery rs
Check "clsquery_SaveQuery", rs("Field1").Value, "Washing"
Set documentQuery = CreateObject("KvVesk.clsDocumentQuery")
documentQuery.clsquery_LoadQuery rs
Check "clsquery_LoadQuery", documentQuery.clsquery_GetQueryValue("Field1"), "Washing"

Set manualQuery = vesk.Manual.NewQuery()
Set rs = vesk.Manual.DataServer.Queries.Open(manualQuery.id())
Set manualQuery = CreateObject("KvVesk.clsManualQuery")
manualQuery.LoadQuery rs
manualQuery.SetQueryValue "Field1", "Floor"
manualQuery.clsquery_SetQueryValue "Field1Key", 0
Check "manual query, JetSQL", manualQuery.JetSQL(), "Where ManualName = 'Floor'"
Check "manual query, its other name", manualQuery.clsquery_JetSQL(), manualQuery.JetSQL()
Check "manual query, CrystalSQL", manualQuery.CrystalSQL(), manualQuery.clsquery_CrystalSQL()
manualQuery.SaveQuery rs
manualQuery.clsquery_SaveQuery rs
Check "manual query, SaveQuery", rs("Field1").Value, "Floor"
Check "manual query, id", manualQuery.id(), manualQuery.clsquery_ID()
Check "manual query, values", manualQuery.GetQueryValue("Field1"), manualQuery.clsquery_GetQueryValue("Field1")
manualQuery.clsquery_LoadQuery rs
Check "manual query, read again", manualQuery.GetQueryValue("Field1"), "Floor"

Set userQuery = vesk.User.NewQuery()
Check "user query, JetSQL", userQuery.JetSQL(), userQuery.clsquery_JetSQL()
Check "user query, CrystalSQL", userQuery.CrystalSQL(), userQuery.clsquery_CrystalSQL()
Check "user query, id", userQuery.id(), userQuery.clsquery_ID()
userQuery.SetQueryValue "Alias", "Mei"
userQuery.clsquery_SetQueryValue "AliasOperator", 0
Check "user query, values", userQuery.GetQueryValue("Alias"), userQuery.clsquery_GetQueryValue("Alias")
Set rs = vesk.GetRecordset("Select * From UserQuerys Where QueryID = " & userQuery.id())
userQuery.SaveQuery rs
userQuery.clsquery_SaveQuery rs
Check "user query, SaveQuery", rs("Alias").Value, "Mei"
Set userQuery = CreateObject("KvVesk.clsUserQuery")
userQuery.LoadQuery rs
Set userQuery = CreateObject("KvVesk.clsUserQuery")
userQuery.clsquery_LoadQuery rs
Check "user query, read again", userQuery.GetQueryValue("Alias"), "Mei"

' The class of that name is an interface: it does nothing.
Set blank = CreateObject("KvVesk.clsQuery")
blank.LoadQuery rs
blank.SaveQuery rs
blank.SetQueryValue "Alias", "x"
Check "blank, GetQueryValue", blank.GetQueryValue("Alias"), Empty
Check "blank, JetSQL", blank.JetSQL() & blank.CrystalSQL(), ""
Check "blank, id", blank.id(), 0
vesk.CloseSession
Finish
