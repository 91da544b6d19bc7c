// SPDX-License-Identifier: Apache-2.0
// The record operations of clsVeskDocument: what they run, give back, store and raise.
#include "classes/documents/document.h"

#include <gtest/gtest.h>

#include "classes/documents/document_session.h"
#include "common/clock.h"

namespace kv {
namespace {

using test::at;
using test::LoadedDocument;
using test::Texts;

class Document : public test::DocumentSession<test::SessionTest> {
 protected:
  Document() { logIn("Anna"); }

  // A document's row in a set that belongs to no database.
  Ref<Recordset> withoutDatabase(const std::string& id) {
    const auto stored = document().Record(id);
    const auto rs = Recordset::create();
    for (std::int32_t i = 0; i < stored->Fields().Count(); ++i) {
      const auto field = stored->Fields(i);
      rs->Fields().Append(field->Name(), field->Type(), field->DefinedSize(), field->Attributes());
    }
    rs->Open();
    rs->AddNew();
    for (std::int32_t i = 0; i < stored->Fields().Count(); ++i)
      rs->Fields(i)->Value(stored->Fields(i)->Value());
    rs->Update();
    return rs;
  }
};

// ---- set-up ----

TEST_F(Document, NamesItsTablesToItsDataServer) {
  clsVeskDocument own;
  ASSERT_TRUE(own.DataServer()) << "one of its own from the beginning";
  EXPECT_TRUE(own.OpenConnection(reg_.path()).isEmpty());
  EXPECT_TRUE(own.Login().isEmpty());
  const auto server = own.DataServer();
  EXPECT_NO_THROW((void)server->Config()->Value("DocumentTitle"));
  EXPECT_RAISES(3265, (void)server->Config()->Value("DatabaseVersion"));
  EXPECT_EQ(server->groupsTable(), "VeskGroups");
  EXPECT_EQ(server->profilesTable(), "VeskProfiles");
  const std::int32_t id = server->Queries()->Add("mine");
  EXPECT_EQ(reg_.value("Select QueryID From DocumentQuerys"), std::to_string(id));
  server->Close();
}

TEST_F(Document, OpensOnTheConnectionOfAProfile) {
  clsVeskDocument own;
  own.OpenConnection("", vesk_->DataServer()->Profile());
  EXPECT_EQ(own.DataServer()->Connection(), vesk_->DataServer()->Connection());
  EXPECT_RAISES(kNoConnection, clsVeskDocument().OpenConnection());
}

TEST_F(Document, DataServerAndRootCanBeReplaced) {
  clsVeskDocument own;
  own.DataServer(document().DataServer());
  EXPECT_EQ(own.DataServer(), document().DataServer());
  own.oVesk(document().oVesk());
  EXPECT_EQ(own.oVesk().get(), &*vesk_);
  addDocument("D1");
  EXPECT_EQ(own.Value("D1", "DocumentTitle"), Variant("Title"));
  own.oVesk(nullptr);
}

TEST_F(Document, WithoutAConnectionThereIsNoObject) {
  clsVeskDocument own;
  LoadedDocument loaded;
  EXPECT_RAISES(kObjectNotSet, (void)own.Records(0, "", "Select * From Documents"));
  EXPECT_RAISES(kObjectNotSet, (void)own.Records(1));
  EXPECT_RAISES(kObjectNotSet, (void)own.Record("D1"));
  EXPECT_RAISES(kObjectNotSet, loaded.from(own, "D1"));
  EXPECT_RAISES(kObjectNotSet, (void)own.Value("D1", "DocumentTitle"));
  EXPECT_RAISES(kObjectNotSet, own.SetValue("D1", "DocumentTitle", "x"));
  EXPECT_RAISES(kObjectNotSet, own.MakeUnControlled("D1"));
  EXPECT_RAISES(kObjectNotSet, own.Delete("D1"));
  EXPECT_RAISES(kObjectNotSet, (void)own.AddQuery());
}

// ---- lists ----

TEST_F(Document, ThereIsNoListWithoutFilterOrStatement) {
  addDocument("D1");
  std::string sql;
  EXPECT_TRUE(statementsOf([&] {
                EXPECT_FALSE(document().Records());
                EXPECT_FALSE(document().Records(0, "DocumentTitle"));
                EXPECT_FALSE(document().Records(0, "", "", "DocumentID"));
                EXPECT_FALSE(document().Records(0, "DocumentTitle", "   ", "DocumentID"));
                EXPECT_FALSE(document().Records(0, "DocumentTitle", sql, "DocumentID"));
              }).empty());
  EXPECT_EQ(sql, "");
}

TEST_F(Document, AStatementIsOpenedAsItStands) {
  addDocument("D1", "Open");
  addDocument("D2", "Secured", "SecurityLevel = True");
  const std::int32_t query = document().AddQuery()->id();
  logIn("Bert");
  std::string sql = "  Select DocumentTitle From Documents Order By DocumentTitle Desc ";
  const std::string given = sql;
  Ref<Recordset> rs;
  EXPECT_EQ(statementsOf([&] { rs = document().Records(query, "DocumentID", sql, "DocumentID"); }),
            Texts{given});
  EXPECT_EQ(sql, given) << "which stays as it is";
  EXPECT_EQ(test::rowsOf(*rs), (Texts{"Secured", "Open"})) << "secured documents as well";
  EXPECT_EQ(rs->CursorType(), kKeyset);
  EXPECT_EQ(rs->LockType(), kOptimistic);
  EXPECT_TRUE(rs->Supports(kSupportsUpdate));
  EXPECT_RAISES(kSyntax, (void)document().Records(0, "", "nonsense"));
}

struct ListCase {
  const char* user;
  Variant kind;
  const char* sort;
  const char* given;
  const char* fields;
  const char* condition;
  const char* statement;
};

TEST_F(Document, AListOverASavedQuery) {
  const auto query = document().AddQuery();
  for (const ListCase& c :
       {ListCase{"Anna", Null, "", "", "", "", "Select * from Documents  Order By DocumentTitle"},
        ListCase{"Bert", Null, "", "", "", " Where SecurityLevel = 0",
                 "Select * from Documents  Where SecurityLevel = 0 Order By DocumentTitle"},
        ListCase{"Anna", 0, "", "", "", "Where Controlled <> 0",
                 "Select * from Documents Where Controlled <> 0 Order By DocumentTitle"},
        ListCase{"Bert", 0, "", "", "", "Where Controlled <> 0 and SecurityLevel = 0",
                 "Select * from Documents Where Controlled <> 0 and SecurityLevel = 0 Order By "
                 "DocumentTitle"},
        ListCase{"Anna", 1, "DocumentNumber Desc, ID", "  ", "DocumentID, DocumentTitle",
                 "Where Controlled = False",
                 "Select DocumentID, DocumentTitle from Documents Where Controlled = False Order "
                 "By DocumentNumber Desc, ID"},
        ListCase{"Bert", Null, "ID", "   ", "ID", " Where SecurityLevel = 0",
                 "Select ID from Documents  Where SecurityLevel = 0 Order By ID"}}) {
    logIn(c.user);
    query->SetQueryValue("DocType", c.kind);
    document().SaveQuery(query);
    std::string sql = c.given;
    EXPECT_EQ(
        statementsOf([&] { ASSERT_TRUE(document().Records(query->id(), c.sort, sql, c.fields)); }),
        Texts{c.statement});
    EXPECT_EQ(sql, c.condition) << "written back";
  }
}

TEST_F(Document, OnlyAdministratorsSeeSecuredDocumentsInLists) {
  addDocument("D1", "Open");
  addDocument("D2", "Secured", "SecurityLevel = True");
  const std::int32_t query = document().AddQuery()->id();
  const auto titles = [&] {
    return test::rowsOf(*document().Records(query, "", "", "DocumentTitle"));
  };
  EXPECT_EQ(titles(), (Texts{"Open", "Secured"}));
  logIn("Bert");
  EXPECT_EQ(titles(), Texts{"Open"});
  vesk_->DataServer()->Profile()->Rights(std::string(255, '1'));
  EXPECT_EQ(titles(), Texts{"Open"}) << "rights do not help";
  reg_.execute("Update VeskProfiles Set Administrator = True Where UserID = 'User2'");
  logIn("Bert");
  EXPECT_EQ(titles(), (Texts{"Open", "Secured"}));
}

TEST_F(Document, TheFilterHoldsForEveryKindOfQuery) {
  addDocument("D1", "A open");
  addDocument("D2", "A secured", "SecurityLevel = True, Controlled = True");
  logIn("Bert");
  const auto query = document().AddQuery();
  for (const auto& [field, value, code] :
       {std::tuple{"Field1", "A", 1}, {"Field1", "zzz", 3}, {"Field2", "x", 4}}) {
    query->SetQueryValue(field, value);
    query->SetQueryValue(field + std::string("Key"), code);
    document().SaveQuery(query);
    for (const auto& title :
         test::rowsOf(*document().Records(query->id(), "", "", "DocumentTitle")))
      EXPECT_EQ(title, "A open");
    EXPECT_LE(document().Records(query->id())->RecordCount(), 1);
    query->SetQueryValue(field, Null);
  }
}

TEST_F(Document, AQueryThatDoesNotExistHasNoCriteria) {
  addDocument("D1", "Open");
  addDocument("D2", "Secured", "SecurityLevel = True");
  for (const std::int32_t id : {999, -1}) {
    EXPECT_EQ(document().Records(id)->RecordCount(), 2);
    std::string sql;
    logIn("Bert");
    EXPECT_EQ(document().Records(id, "", sql)->RecordCount(), 1);
    EXPECT_EQ(sql, " Where SecurityLevel = 0");
    logIn("Anna");
  }
}

TEST_F(Document, ListsAreInTheOrderOfTheTitleUnlessOneIsGiven) {
  addDocument("D1", "beta", "DocumentNumber = '1'");
  addDocument("D2", "Alpha", "DocumentNumber = '3'");
  addDocument("D3", "gamma", "DocumentNumber = '2'");
  const std::int32_t query = document().AddQuery()->id();
  const auto ids = [&](const std::string& sort) {
    return test::rowsOf(*document().Records(query, sort, "", "DocumentID"));
  };
  EXPECT_EQ(ids(""), (Texts{"D2", "D1", "D3"}));
  EXPECT_EQ(ids("DocumentNumber"), (Texts{"D1", "D3", "D2"}));
  EXPECT_EQ(ids("ID Desc"), (Texts{"D3", "D2", "D1"}));
  EXPECT_RAISES(kUnknownName, (void)ids("NoSuchColumn"));
  EXPECT_RAISES(kUnknownName, (void)document().Records(query, "", "", "NoSuchColumn"));
}

TEST_F(Document, AQueryThatCannotBeToldRunsNothing) {
  const auto query = document().AddQuery();
  query->SetQueryValue("Field1", "x");
  document().SaveQuery(query);
  EXPECT_TRUE(statementsOf([&] {
                EXPECT_RAISES(kInvalidNull, (void)document().Records(query->id()));
              }).empty());
}

TEST_F(Document, RecordIsTheSetOfOneRow) {
  addDocument("D1");
  addDocument("D2", "Secured", "SecurityLevel = True");
  logIn("Bert");
  Ref<Recordset> rs;
  EXPECT_EQ(statementsOf([&] { rs = document().Record("D2"); }),
            Texts{"Select * From Documents Where DocumentID = 'D2'"});
  EXPECT_EQ(rs->RecordCount(), 1);
  EXPECT_EQ(rs->Fields("documenttitle")->Value(), Variant("Secured"));
  rs->Fields("DocumentTitle")->Value("changed");
  rs->Update();
  EXPECT_EQ(reg_.value("Select DocumentTitle From Documents Where DocumentID = 'D2'"), "changed");
  EXPECT_EQ(document().Record("D3")->RecordCount(), 0);
}

// ---- loading ----

constexpr const char* kFull =
    "DocumentNumber = 'N-1', RevisionLevel = 'B', EffectiveDate = #3/9/2001#, DocUser1 = 'one', "
    "DocUser2 = 'two', DocUser3 = 'three', DocUser4 = 'four', DocumentNotes = 'notes', "
    "SecurityLevel = True, Location = 'shelf', Controlled = True, CurrentRevID = 17";
constexpr const char* kFullText =
    "Full|N-1|B|3/9/2001|one|two|three|four|notes|secured|shelf|controlled|17";

TEST_F(Document, LoadDataReadsEveryField) {
  addDocument("D1", "Full", kFull);
  addDocument("D2");
  LoadedDocument loaded;
  EXPECT_EQ(statementsOf([&] { loaded.from(document(), "D1"); }),
            Texts{"Select * From Documents Where DocumentID = 'D1'"});
  EXPECT_EQ(loaded.text(), kFullText);
  LoadedDocument lower;
  lower.from(document(), "d1");
  EXPECT_EQ(lower.text(), kFullText) << "identifiers ignore case";
}

TEST_F(Document, NullLoadsAsNothingAndLeavesTheRevision) {
  reg_.execute("Insert Into Documents (DocumentID) Values ('D1')");
  for (const std::int32_t before : {0, 42, -1}) {
    LoadedDocument loaded;
    loaded.secured = loaded.controlled = true;
    loaded.current = before;
    loaded.from(document(), "D1");
    EXPECT_EQ(loaded.text(), "|||||||||open||uncontrolled|" + std::to_string(before));
  }
  reg_.execute("Update Documents Set CurrentRevID = 0");
  LoadedDocument loaded;
  loaded.from(document(), "D1");
  EXPECT_EQ(loaded.current, 0) << "0 is a value";
}

TEST_F(Document, LoadDataFromACallersSetRunsNothingAndStandsOnTheRow) {
  addDocument("D1", "one");
  addDocument("D2", "Full", kFull);
  addDocument("D3", "three");
  const auto rs = document().Records(0, "", "Select * From Documents Order By ID");
  for (const char* from : {"first", "last", "eof", "bof"}) {
    rs->MoveFirst();
    if (from == std::string("last")) rs->MoveLast();
    if (from == std::string("eof")) rs->Move(5);
    if (from == std::string("bof")) rs->MovePrevious();
    LoadedDocument loaded;
    EXPECT_TRUE(statementsOf([&] { loaded.from(document(), "D2", rs); }).empty());
    EXPECT_EQ(loaded.text(), kFullText) << from;
    EXPECT_EQ(rs->AbsolutePosition(), 2) << from;
    EXPECT_EQ(rs->State(), kStateOpen);
    EXPECT_EQ(rs->EditMode(), kEditNone);
  }
  LoadedDocument first;
  first.from(document(), "d1", rs);
  EXPECT_EQ(first.title, "one") << "the search ignores case and includes the first row";
}

TEST_F(Document, LoadDataTakesAnySetThatHasTheColumns) {
  addDocument("D1", "Full", kFull);
  const auto rs = withoutDatabase("D1");
  rs->Fields("DocumentID")->Value("X1");
  rs->Fields("DocumentTitle")->Value("of X1");
  rs->Update();
  LoadedDocument loaded;
  loaded.from(document(), "X1", rs);
  EXPECT_EQ(loaded.title, "of X1");
  EXPECT_EQ(loaded.notes, "notes");
}

TEST_F(Document, ASetThatLacksAColumnStaysOpenOnTheRow) {
  addDocument("D1", "one");
  addDocument("D2", "two");
  const auto rs =
      document().Records(0, "", "Select DocumentID, DocumentTitle From Documents Order By ID");
  LoadedDocument loaded;
  EXPECT_RAISES(kNoSuchItem, loaded.from(document(), "D2", rs));
  EXPECT_EQ(loaded.title, "two") << "what came before it is loaded";
  EXPECT_EQ(loaded.number, "?");
  EXPECT_EQ(rs->State(), kStateOpen);
  EXPECT_EQ(rs->AbsolutePosition(), 2);
  EXPECT_RAISES(kNoSuchItem, save("D2", "x", rs));
  EXPECT_EQ(rs->State(), kStateOpen);
  rs->CancelUpdate();
  EXPECT_EQ(reg_.rows("Select DocumentTitle From Documents"), (Texts{"one", "two"}));
}

// ---- not found ----

struct NotFound {
  bool saving;
  const char* set;  // "" for none
  const char* id;
  std::int32_t code;
  const char* description;
};

TEST_F(Document, WhatIsRaisedWhenThereIsNoSuchDocument) {
  addDocument("D1");
  addDocument("D2");
  addDocument("D2");
  const char* none = "Select * From Documents Where ID = -1";
  const char* some = "Select * From Documents";
  const char* notInSet = "Document is not found in current Recordset";
  const char* empty = "No Documents found in current Recordset";
  const char* notInFile = "Document is not found in datafile";
  const NotFound cases[] = {{false, some, "D9", 2601, notInSet}, {false, some, "", 2601, notInSet},
                            {false, none, "D1", 2602, empty},    {false, "", "D9", 2603, notInFile},
                            {false, "", "", 2603, notInFile},    {false, "", "D2", 2603, notInFile},
                            {true, some, "D9", 2604, notInSet},  {true, some, "", 2604, notInSet},
                            {true, none, "D1", 2605, empty},     {true, "", "D9", 2606, notInFile},
                            {true, "", "", 2606, notInFile},     {true, "", "D2", 2606, notInFile}};
  const auto before = everything();
  for (const auto& c : cases) {
    const std::string sql = c.set;
    const auto rs = sql.empty() ? Ref<Recordset>() : document().Records(0, "", sql);
    LoadedDocument loaded;
    const auto error = test::errorOf([&] {
      if (c.saving)
        save(c.id, "x", rs);
      else
        loaded.from(document(), c.id, rs);
    });
    ASSERT_TRUE(error) << c.code;
    EXPECT_EQ(error->number(), kErrorBase + c.code);
    EXPECT_EQ(error->source(), "LoadDocumentData");
    EXPECT_EQ(error->description(), c.description);
    EXPECT_EQ(loaded.text(), test::kUntouched);
    if (rs) {
      EXPECT_EQ(rs->State(), kStateOpen) << "the caller's set stays open";
      EXPECT_TRUE(rs->Eof());
    }
  }
  EXPECT_EQ(everything(), before);
}

TEST_F(Document, ErrorNumbersAreTheOnesThatClientsKnow) {
  LoadedDocument loaded;
  const auto none = document().Records(0, "", "Select * From Documents");
  EXPECT_EQ(test::numberOf([&] { loaded.from(document(), "x", none); }), -2147218902);
  EXPECT_EQ(test::numberOf([&] { loaded.from(document(), "x"); }), -2147218901);
  EXPECT_EQ(test::numberOf([&] { save("x", "x", none); }), -2147218899);
  EXPECT_EQ(test::numberOf([&] { save("x", "x"); }), -2147218898);
  addDocument("D1");
  const auto some = document().Records(0, "", "Select * From Documents");
  EXPECT_EQ(test::numberOf([&] { loaded.from(document(), "x", some); }), -2147218903);
  EXPECT_EQ(test::numberOf([&] { save("x", "x", some); }), -2147218900);
}

TEST_F(Document, InACallersSetTheFirstOfTwoIsTaken) {
  addDocument("D2", "first");
  addDocument("D2", "second");
  const auto rs = document().Records(0, "", "Select * From Documents Order By ID");
  LoadedDocument loaded;
  loaded.from(document(), "D2", rs);
  EXPECT_EQ(loaded.title, "first");
  save("D2", "x", rs);
  EXPECT_EQ(reg_.rows("Select DocumentTitle From Documents Order By ID"),
            (Texts{"x title", "second"}));
}

// ---- adding ----

// Adds a document whose fields are what their names say.
std::string add(clsVeskDocument& document, bool ready, bool controlled, bool secured = false,
                const Ref<Recordset>& rs = {}) {
  return document.Add("User7", "title", "number", "one", "two", "three", "four", "notes", 0,
                      "shelf", "B", "3/9/2001", ready, controlled, secured, rs);
}

TEST_F(Document, ANewDocumentIsNamedAfterItsUserAndTheMoment) {
  const StoppedClock clock(at(2001, 2, 3, 14, 5, 9));
  EXPECT_EQ(document().Add("USER7", "t", "", "", "", "", "", "", 0, "", "", "", false),
            "USER7020301140509");
  EXPECT_EQ(reg_.value("Select DocumentID From Documents"), "USER7020301140509");
}

TEST_F(Document, AddRunsTheseStatements) {
  const StoppedClock clock(at(2001, 2, 3, 14, 5, 9));
  EXPECT_EQ(statementsOf([&] { add(document(), true, true); }),
            (Texts{"Select * From Documents Where ID = -1",
                   "Select * from Revisions Where RevisionID = -1",
                   "Select * From Revisions Where RevisionLevel = 'User7020301140509'"}));
  const auto rs = document().Records(0, "", "Select * From Documents");
  EXPECT_EQ(statementsOf([&] { add(document(), true, true, false, rs); }),
            (Texts{"Select * from Revisions Where RevisionID = -1",
                   "Select * From Revisions Where RevisionLevel = 'User7020301140509'"}));
}

struct AddCase {
  bool ready;
  bool controlled;
  bool secured;
  const char* document;  // %: the revision's number
  const char* status;
};

TEST_F(Document, AddStoresTheDocumentAndItsFirstRevision) {
  for (const AddCase& c :
       {AddCase{true, true, true,
                "title|number|B|3/9/2001|one|two|three|four|notes|True|shelf|True|%", "1"},
        AddCase{false, true, false, "title|number|~|~|one|two|three|four|notes|False|shelf|True|~",
                "2"},
        AddCase{true, false, true,
                "title|number|Uncontrolled|~|one|two|three|four|notes|True|shelf|False|0", "1"},
        AddCase{false, false, false,
                "title|number|Uncontrolled|~|one|two|three|four|notes|False|shelf|False|0", "2"}}) {
    reg_.execute("Delete * From Documents");
    reg_.execute("Delete * From Revisions");
    const std::string id = add(document(), c.ready, c.controlled, c.secured);
    const std::string revision = reg_.value("Select RevisionID From Revisions");
    std::string expected = c.document;
    if (expected.ends_with('%')) expected.replace(expected.size() - 1, 1, revision);
    EXPECT_EQ(row(id), expected);
    EXPECT_EQ(reg_.value("Select DocumentID, RevisionLevel, RevUser1, RevUser2, "
                         "ChangeDescription, Location, EffectiveDate, ResponsibleID, "
                         "RoutingStatus, RevisionStatus From Revisions"),
              id + "|B|~|~|~|shelf|3/9/2001|User7|0|" + c.status);
  }
}

TEST_F(Document, SecuredAndNotSecuritylevelSecuresADocument) {
  document().Add("A", "", "", "", "", "", "", "", 0, "", "", "", false, false, true);
  document().Add("B", "", "", "", "", "", "", "", -1, "", "", "", false, false, false);
  EXPECT_EQ(reg_.rows("Select SecurityLevel From Documents Order By ID"), (Texts{"True", "False"}));
}

TEST_F(Document, LeftOutADocumentIsNeitherControlledNorSecured) {
  const std::string id =
      document().Add("User7", "t", "", "", "", "", "", "", -1, "", "B", "", true);
  EXPECT_EQ(row(id), "t|~|Uncontrolled|~|~|~|~|~|~|False|~|False|0");
}

TEST_F(Document, EmptyTextIsStoredAsNull) {
  const std::string id =
      document().Add("User7", "", "", "", "", "", "", "", 0, "", "", "", true, true);
  const std::string revision = reg_.value("Select RevisionID From Revisions");
  EXPECT_EQ(row(id), "~|~|~|~|~|~|~|~|~|False|~|True|" + revision);
  LoadedDocument loaded;
  loaded.from(document(), id);
  EXPECT_EQ(loaded.text(), "|||||||||open||controlled|" + revision);
}

TEST_F(Document, AddToACallersSet) {
  addDocument("D1");
  const auto rs = document().Records(0, "", "Select * From Documents Order By DocumentTitle");
  const std::string id = add(document(), true, true, true, rs);
  EXPECT_EQ(rs->State(), kStateOpen);
  EXPECT_EQ(rs->EditMode(), kEditNone);
  EXPECT_EQ(rs->RecordCount(), 2);
  EXPECT_EQ(rs->AbsolutePosition(), 2);
  EXPECT_EQ(rs->Fields("DocumentID")->Value(), Variant(id));
  EXPECT_EQ(rs->Fields("SecurityLevel")->Value(), Variant(true));
  EXPECT_EQ(reg_.value("Select Count(*) From Documents"), "2");
}

TEST_F(Document, TwoWithinASecondGetOneIdentifierAndTwoRevisions) {
  const StoppedClock clock(at(2001, 2, 3, 14, 5, 9));
  const std::string first = add(document(), true, true);
  const std::string second = add(document(), true, true);
  EXPECT_EQ(first, second) << "nothing guards against that";
  EXPECT_EQ(reg_.value("Select Count(*) From Documents"), "2");
  EXPECT_EQ(reg_.rows("Select CurrentRevID From Documents Order By ID"),
            reg_.rows("Select RevisionID From Revisions Order By RevisionID"));
}

TEST_F(Document, NoRightIsTested) {
  logIn("Bert");
  vesk_->DataServer()->Profile()->Rights(std::string(255, '0'));
  const std::string id = add(document(), true, true, true);
  EXPECT_EQ(save(id, "x"), 0);
  document().SetValue(id, "DocumentTitle", "y");
  EXPECT_EQ(document().Value(id, "DocumentTitle"), Variant("y"));
  document().MakeUnControlled(id);
  document().Delete(id, true);
  EXPECT_EQ(reg_.value("Select Count(*) From Documents"), "0");
}

// ---- saving ----

TEST_F(Document, SaveDataWritesTheFieldsAndNothingElse) {
  addDocument("D1", "Full", kFull);
  addDocument("D2", "Other", kFull);
  const std::string other = row("D2");
  std::int16_t result = 1;
  EXPECT_EQ(statementsOf([&] { result = save("D1", "new"); }),
            Texts{"Select * From Documents Where DocumentID = 'D1'"});
  EXPECT_EQ(result, 0);
  EXPECT_EQ(row("D1"),
            "new title|new number|B|3/9/2001|new1|new2|new3|new4|new notes|True|new "
            "location|True|17");
  document().SaveData("D1", "t", "n", "1", "2", "3", "4", "m", false, false, "l");
  EXPECT_EQ(row("D1"), "t|n|B|3/9/2001|1|2|3|4|m|False|l|False|17");
  EXPECT_EQ(row("D2"), other);
}

TEST_F(Document, SavingEmptyTextStoresNull) {
  addDocument("D1", "Full", kFull);
  document().SaveData("D1", "", "", "", "", "", "", "", true, true, "");
  EXPECT_EQ(row("D1"), "~|~|B|3/9/2001|~|~|~|~|~|True|~|True|17");
  LoadedDocument loaded;
  loaded.from(document(), "D1");
  EXPECT_EQ(loaded.title, "");
}

TEST_F(Document, SaveDataIntoACallersSet) {
  addDocument("D1", "one");
  addDocument("D2", "two");
  const auto rs = document().Records(0, "", "Select * From Documents Order By ID");
  rs->MoveLast();
  rs->MoveNext();
  std::int16_t result = 1;
  EXPECT_TRUE(statementsOf([&] { result = save("D1", "new", rs); }).empty());
  EXPECT_EQ(result, 0);
  EXPECT_EQ(rs->AbsolutePosition(), 1);
  EXPECT_EQ(rs->State(), kStateOpen);
  EXPECT_EQ(rs->EditMode(), kEditNone) << "stored by then";
  EXPECT_EQ(rs->Fields("DocumentTitle")->Value(), Variant("new title"));
  EXPECT_EQ(reg_.rows("Select DocumentTitle From Documents Order By ID"),
            (Texts{"new title", "two"}));
}

TEST_F(Document, SetsOfNoDatabaseAreSavedAndAddedToAsWell) {
  addDocument("D1", "Full", kFull);
  const auto rs = withoutDatabase("D1");
  const auto before = everything();
  EXPECT_EQ(save("D1", "new", rs), 0);
  EXPECT_EQ(rs->Fields("DocumentTitle")->Value(), Variant("new title"));
  EXPECT_EQ(rs->EditMode(), kEditNone);
  EXPECT_EQ(everything(), before) << "the database has nothing to do with it";
  const std::string id = add(document(), true, true, false, rs);
  EXPECT_EQ(rs->RecordCount(), 2);
  EXPECT_EQ(rs->Fields("DocumentID")->Value(), Variant(id));
  EXPECT_EQ(reg_.value("Select Count(*) From Documents"), "1");
  EXPECT_EQ(reg_.value("Select RevisionLevel From Revisions Where DocumentID = '" + id + "'"), "B");
}

TEST_F(Document, WhatWasLoadedCanBeSavedUnchanged) {
  addDocument("D1", "Full", kFull);
  addDocument("D2", "O''Brien''s \"book\"", "DocumentNotes = 'a\r\nb'");
  const auto before = everything();
  const auto rs = document().Records(0, "", "Select * From Documents");
  for (const char* id : {"D1", "D2"})
    for (const auto& set : {Ref<Recordset>(), rs}) {
      LoadedDocument d;
      d.from(document(), id, set);
      document().SaveData(id, d.title, d.number, d.user1, d.user2, d.user3, d.user4, d.notes,
                          d.secured, d.controlled, d.location, set);
      EXPECT_EQ(everything(), before);
    }
}

// ---- single fields ----

TEST_F(Document, ValueReadsOneField) {
  addDocument("D1", "Full", kFull);
  EXPECT_EQ(statementsOf([&] { (void)document().Value("D1", "DocumentTitle"); }),
            Texts{"Select * From Documents Where DocumentID = 'D1'"});
  EXPECT_EQ(document().Value("D1", "documenttitle"), Variant("Full"));
  EXPECT_EQ(document().Value("D1", "EffectiveDate"), Variant(at(2001, 3, 9)));
  EXPECT_EQ(document().Value("D1", "SecurityLevel"), Variant(true));
  EXPECT_EQ(document().Value("D1", "CurrentRevID"), Variant(17));
  reg_.execute("Update Documents Set DocumentTitle = Null");
  EXPECT_EQ(document().Value("D1", "DocumentTitle"), Variant(Null)) << "Null as it is";
  EXPECT_TRUE(document().Value("D9", "DocumentTitle").isEmpty());
  EXPECT_TRUE(document().Value("D9", "NoSuchColumn").isEmpty()) << "there is no row to ask";
}

TEST_F(Document, IDValueReadsByTheRowsNumber) {
  addDocument("D1", "one");
  addDocument("D2", "two");
  EXPECT_EQ(
      statementsOf([&] { EXPECT_EQ(document().IDValue(2, "DocumentTitle"), Variant("two")); }),
      Texts{"Select * From Documents Where ID = 2"});
  EXPECT_EQ(document().IDValue(1, "DocumentID"), Variant("D1"));
  for (const std::int32_t none : {0, -1, 3, 2147483647, -2147483647 - 1}) {
    EXPECT_EQ(
        statementsOf([&] { EXPECT_TRUE(document().IDValue(none, "DocumentTitle").isEmpty()); }),
        Texts{"Select * From Documents Where ID = " + std::to_string(none)});
  }
}

TEST_F(Document, SetValueStoresWhatItIsGiven) {
  addDocument("D1", "Full", kFull);
  addDocument("D2", "Other");
  EXPECT_EQ(statementsOf([&] { document().SetValue("D1", "DocumentTitle", "changed"); }),
            Texts{"Select * From Documents Where DocumentID = 'D1'"});
  document().SetValue("D1", "effectivedate", "2002-01-02");
  document().SetValue("D1", "CurrentRevID", "21");
  document().SetValue("D1", "SecurityLevel", false);
  document().SetValue("D1", "DocUser1", Null);
  document().SetValue("D1", "DocUser2", "");
  EXPECT_EQ(row("D1"), "changed|N-1|B|1/2/2002|~||three|four|notes|False|shelf|True|21")
      << "empty text stays empty text";
  EXPECT_EQ(reg_.value("Select DocumentTitle From Documents Where DocumentID = 'D2'"), "Other");
  const auto before = everything();
  document().SetValue("D9", "DocumentTitle", "nobody's");
  document().SetValue("D9", "NoSuchColumn", "nobody's");
  EXPECT_EQ(everything(), before) << "nothing happens for a document that does not exist";
}

TEST_F(Document, OfTwoWithOneIdentifierTheFirstIsReadAndWritten) {
  addDocument("D2", "first", "CurrentRevID = 0");
  addDocument("D2", "second", "Controlled = True");
  reg_.execute("Update Documents Set CurrentRevID = 5 Where DocumentTitle = 'second'");
  EXPECT_EQ(document().Value("D2", "DocumentTitle"), Variant("first"));
  EXPECT_FALSE(document().HasCurrentRevision("D2"));
  document().SetValue("D2", "DocumentTitle", "changed");
  EXPECT_EQ(reg_.rows("Select DocumentTitle From Documents Order By ID"),
            (Texts{"changed", "second"}));
}

TEST_F(Document, HasCurrentRevisionLooksAtTheDocumentsRow) {
  addDocument("D1");
  EXPECT_EQ(statementsOf([&] { EXPECT_FALSE(document().HasCurrentRevision("D1")) << "Null"; }),
            Texts{"Select * From Documents Where DocumentID = 'D1'"});
  for (const auto& [number, expected] :
       {std::pair{0, false}, {-1, false}, {1, true}, {999999, true}}) {
    document().SetValue("D1", "CurrentRevID", number);
    EXPECT_EQ(document().HasCurrentRevision("D1"), expected) << number;
  }
  EXPECT_FALSE(document().HasCurrentRevision("D9"));
}

// ---- what hangs off a document ----

TEST_F(Document, MakeUnControlledTakesTheDocumentOut) {
  addDocument("D1", "Full", kFull);
  addDocument("D2");
  addEverythingOf("D1");
  addEverythingOf("D2");
  const std::string before = row("D1");
  EXPECT_EQ(statementsOf([&] { document().MakeUnControlled("D1"); }),
            (Texts{"Delete * From ManualContents Where DocumentID = 'D1'",
                   "Delete * From Personals Where DocumentID = 'D1' And HardCopy <> 0",
                   "Delete * From Routing Where DocumentID = 'D1'",
                   "Delete * From Revisions Where DocumentID = 'D1' and RevisionStatus <> 1"}));
  EXPECT_EQ(linksOf("D1"), "0 1 1 0 1");
  EXPECT_EQ(reg_.value("Select RevisionStatus From Revisions Where DocumentID = 'D1'"), "1");
  EXPECT_EQ(reg_.value("Select HardCopy From Personals Where DocumentID = 'D1'"), "False");
  EXPECT_EQ(row("D1"), before) << "its own row is the caller's to change";
  EXPECT_EQ(linksOf("D2"), "2 6 1 2 2");
}

TEST_F(Document, DeleteRemovesWhatHangsOffADocument) {
  addDocument("D1");
  addDocument("D2");
  addEverythingOf("D1");
  addEverythingOf("D2");
  const Texts statements = {"DELETE * From ManualContents Where DocumentID = 'D1'",
                            "Delete * from Revisions Where DocumentID = 'D1'",
                            "Delete * from Owners Where DocumentID = 'D1'",
                            "Delete * from Routing WHere DocumentID = 'D1'",
                            "Delete * from Personals Where DocumentID = 'D1'"};
  EXPECT_EQ(statementsOf([&] { document().Delete("D1"); }), statements);
  EXPECT_EQ(linksOf("D1"), "0 0 0 0 0");
  EXPECT_EQ(reg_.value("Select Count(*) From Documents"), "2") << "its row stays";
  Texts more = statements;
  more.emplace_back("Delete * from Documents Where DocumentID = 'D1'");
  EXPECT_EQ(statementsOf([&] { document().Delete("D1", true); }), more);
  EXPECT_EQ(reg_.value("Select DocumentID From Documents"), "D2");
  EXPECT_EQ(linksOf("D2"), "2 6 1 2 2");
}

TEST_F(Document, DeletingTakesAllRowsOfOneIdentifier) {
  addDocument("D1");
  addDocument("d1");
  document().Delete("D1", true);
  EXPECT_EQ(reg_.value("Select Count(*) From Documents"), "0");
}

}  // namespace
}  // namespace kv
