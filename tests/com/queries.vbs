' Saved queries, by the names of their own interface and by those of clsQuery.
Dim vesk, query, blank, rs, kinds, made, at
Set vesk = OpenSession("Keeper")

Set query = CreateObject("KvVesk.clsDocumentQuery")
Check "GetQueryValue of nothing", query.GetQueryValue("Field1"), Empty
Set rs = vesk.Document.DataServer.Queries.Open(vesk.Document.AddQuery().id)
query.LoadQuery rs
Check "LoadQuery", query.GetQueryValue("QueryName"), "<<New Query>>"
query.SetQueryValue "Field1", "Gauge"
query.SetQueryValue "Field1Key", 1
query.SetQueryValue "DocType", 0
Check "JetSQL", query.JetSQL(), "Where Controlled <> 0 and DocumentTitle Like '%Gauge%'"
Check "JetSQL by its other name", query.clsquery_JetSQL(), query.JetSQL()
Check "CrystalSQL", query.CrystalSQL(), query.clsquery_CrystalSQL()
Check "CrystalSQL, something", Len(query.CrystalSQL()) > 0, True
query.SaveQuery rs
Check "SaveQuery", rs("Field1").Value, "Gauge"
Check "id", query.id(), rs("QueryID").Value
Check "clsquery_ID", query.clsquery_ID(), rs("QueryID").Value
query.clsquery_SetQueryValue "Field1", "Washing"
Check "clsquery_SetQueryValue and clsquery_GetQueryValue", query.clsquery_GetQueryValue("Field1"), "Washing"
query.clsquery_SaveQuery rs
Check "clsquery_SaveQuery", rs("Field1").Value, "Washing"
Set query = CreateObject("KvVesk.clsDocumentQuery")
query.clsquery_LoadQuery rs
Check "clsquery_LoadQuery", query.clsquery_GetQueryValue("Field1"), "Washing"

Set query = vesk.Manual.NewQuery()
Set rs = vesk.Manual.DataServer.Queries.Open(query.id())
Set query = CreateObject("KvVesk.clsManualQuery")
query.LoadQuery rs
query.SetQueryValue "Field1", "Floor"
query.clsquery_SetQueryValue "Field1Key", 0
Check "manual query, JetSQL", query.JetSQL(), "Where ManualName = 'Floor'"
Check "manual query, its other name", query.clsquery_JetSQL(), query.JetSQL()
Check "manual query, CrystalSQL", query.CrystalSQL(), query.clsquery_CrystalSQL()
query.SaveQuery rs
query.clsquery_SaveQuery rs
Check "manual query, SaveQuery", rs("Field1").Value, "Floor"
Check "manual query, id", query.id(), query.clsquery_ID()
Check "manual query, values", query.GetQueryValue("Field1"), query.clsquery_GetQueryValue("Field1")
query.clsquery_LoadQuery rs
Check "manual query, read again", query.GetQueryValue("Field1"), "Floor"

Set query = vesk.User.NewQuery()
Check "user query, JetSQL", query.JetSQL(), query.clsquery_JetSQL()
Check "user query, CrystalSQL", query.CrystalSQL(), query.clsquery_CrystalSQL()
Check "user query, id", query.id(), query.clsquery_ID()
query.SetQueryValue "Alias", "Mei"
query.clsquery_SetQueryValue "AliasOperator", 0
Check "user query, values", query.GetQueryValue("Alias"), query.clsquery_GetQueryValue("Alias")
Set rs = vesk.GetRecordset("Select * From UserQuerys Where QueryID = " & query.id())
query.SaveQuery rs
query.clsquery_SaveQuery rs
Check "user query, SaveQuery", rs("Alias").Value, "Mei"
Set query = CreateObject("KvVesk.clsUserQuery")
query.LoadQuery rs
Set query = CreateObject("KvVesk.clsUserQuery")
query.clsquery_LoadQuery rs
Check "user query, read again", query.GetQueryValue("Alias"), "Mei"

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
