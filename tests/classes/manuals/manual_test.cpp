// SPDX-License-Identifier: Apache-2.0
// The record operations of clsVeskManual: what they run, give back, store and raise.
#include "classes/manuals/manual.h"

#include <gtest/gtest.h>

#include "classes/manuals/manual_session.h"
#include "classes/rights/rights.h"
#include "common/clock.h"

namespace kv {
namespace {

using test::at;
using test::LoadedManual;
using test::Texts;

class Manual : public test::ManualSession<test::SessionTest> {
 protected:
  Manual() { logIn("Bert"); }

  // A stored query for manuals whose name contains a text.
  std::int32_t queryFor(const std::string& name) {
    const auto query = manual().NewQuery();
    query->SetQueryValue("Field1", name);
    query->SetQueryValue("Field1Key", 1);
    manual().SaveQuery(query);
    return query->id();
  }
};

// ---- set-up ----

TEST_F(Manual, NamesItsTablesToItsDataServer) {
  clsVeskManual own;
  ASSERT_TRUE(own.DataServer()) << "one of its own from the beginning";
  EXPECT_TRUE(own.OpenConnection(reg_.path()).isEmpty());
  EXPECT_TRUE(own.Login().isEmpty());
  const auto server = own.DataServer();
  EXPECT_NO_THROW((void)server->Config()->Value("ManualName"));
  EXPECT_RAISES(kNoSuchItem, (void)server->Config()->Value("DatabaseVersion"));
  EXPECT_EQ(server->groupsTable(), "VeskGroups");
  EXPECT_EQ(server->profilesTable(), "VeskProfiles");
  const std::int32_t id = server->Queries()->Add("mine");
  EXPECT_EQ(reg_.value("Select QueryID From ManualQuerys"), std::to_string(id));
  server->Close();
}

TEST_F(Manual, DataServerAndRootCanBeReplaced) {
  clsVeskManual own;
  own.DataServer(manual().DataServer());
  own.oVesk(manual().oVesk());
  EXPECT_EQ(own.oVesk().get(), &*vesk_);
  addManual("M1");
  EXPECT_EQ(own.Value("M1", "ManualName"), Variant("Name"));
  own.oVesk(nullptr);
}

TEST_F(Manual, WithoutAConnectionThereIsNoObject) {
  clsVeskManual own;
  LoadedManual loaded;
  EXPECT_RAISES(kObjectNotSet, (void)own.Records(-1));
  EXPECT_RAISES(kObjectNotSet, (void)own.Records(1));
  EXPECT_RAISES(kObjectNotSet, (void)own.RecordsWithContents(1));
  EXPECT_RAISES(kObjectNotSet, (void)own.Record("M1"));
  EXPECT_RAISES(kObjectNotSet, loaded.from(own, "M1"));
  EXPECT_RAISES(kObjectNotSet, own.Add("n", "", "", "", "", ""));
  EXPECT_RAISES(kObjectNotSet, (void)own.Value("M1", "ManualName"));
  EXPECT_RAISES(kObjectNotSet, own.SetValue("M1", "ManualName", "x"));
  EXPECT_RAISES(kObjectNotSet, (void)own.HasContents("M1"));
  EXPECT_RAISES(kObjectNotSet, own.Delete("M1"));
  EXPECT_RAISES(kObjectNotSet, (void)own.NewQuery());
}

// ---- lists ----

TEST_F(Manual, AStatementIsOpenedAsItStands) {
  addManual("M1", "beta");
  addManual("M2", "alpha");
  std::string sql = "  Select ManualName From Manuals Order By ID ";
  const std::string given = sql;
  for (const std::int32_t filter : {-1, 0, 999}) {
    Ref<Recordset> rs;
    EXPECT_EQ(statementsOf([&] { rs = manual().Records(filter, "ID", sql, "ManualID"); }),
              Texts{given});
    EXPECT_EQ(sql, given) << "which stays as it is";
    EXPECT_EQ(test::rowsOf(*rs), (Texts{"beta", "alpha"}));
    EXPECT_TRUE(rs->Supports(kSupportsUpdate));
  }
  EXPECT_EQ(statementsOf([&] { (void)manual().RecordsWithContents(999, "", sql); }), Texts{given});
  EXPECT_RAISES(kSyntax, (void)manual().Records(-1, "", "nonsense"));
}

TEST_F(Manual, EveryManualIsListedForMinusOne) {
  addManual("M1", "beta");
  addManual("M2", "Alpha");
  std::string sql;
  Ref<Recordset> rs;
  EXPECT_EQ(statementsOf([&] { rs = manual().Records(-1, "", sql); }),
            Texts{"Select * from Manuals Order By ManualName"});
  EXPECT_EQ(sql, "") << "there is no condition to tell";
  EXPECT_EQ(rs->RecordCount(), 2);
  EXPECT_EQ(rs->Fields("ManualName")->Value(), Variant("Alpha"));
  sql = "   ";
  EXPECT_EQ(statementsOf([&] {
              EXPECT_EQ(test::rowsOf(*manual().Records(-1, "ID Desc", sql, "ManualID")),
                        (Texts{"M2", "M1"}));
            }),
            Texts{"Select ManualID from Manuals Order By ID Desc"});
  EXPECT_RAISES(kUnknownName, (void)manual().Records(-1, "NoSuchColumn"));
}

TEST_F(Manual, EveryOtherNumberIsThatOfASavedQuery) {
  addManual("M1", "Quality");
  addManual("M2", "Safety");
  const std::int32_t empty = manual().NewQuery()->id();
  const std::int32_t query = queryFor("Qual");
  std::string sql;
  EXPECT_EQ(statementsOf([&] {
              EXPECT_EQ(manual().Records(query, "", sql)->RecordCount(), 1);
              EXPECT_EQ(manual().Records(empty, "ID", "", "ManualID")->RecordCount(), 2);
            }),
            (Texts{"Select * from Manuals Where ManualName Like '%Qual%' Order By ManualName",
                   "Select ManualID from Manuals  Order By ID"}));
  EXPECT_EQ(sql, "Where ManualName Like '%Qual%'") << "written back";
}

TEST_F(Manual, WithoutAFilterItIsQueryZeroWhichIsNotThere) {
  addManual("M1");
  EXPECT_EQ(statementsOf([&] {
              EXPECT_RAISES(kNoCurrentRow, (void)manual().Records());
              EXPECT_RAISES(kNoCurrentRow, (void)manual().Records(0, "ManualName"));
              EXPECT_RAISES(kNoCurrentRow, (void)manual().Records(999));
              EXPECT_RAISES(kNoCurrentRow, (void)manual().Records(-2));
              EXPECT_RAISES(kNoCurrentRow, (void)manual().RecordsWithContents());
              EXPECT_RAISES(kNoCurrentRow, (void)manual().RecordsWithContents(-1));
            }),
            Texts{});
}

TEST_F(Manual, AnApostropheInAQueryIsDoubled) {
  addManual("M1", "Q&A''s");
  addManual("M2", "Other");
  const std::int32_t query = queryFor("Q&A's");
  EXPECT_EQ(test::rowsOf(*manual().Records(query, "", "", "ManualID")), Texts{"M1"});
}

TEST_F(Manual, ManualsWithTheirContents) {
  for (const char* document : {"D1", "D2", "D3"})
    reg_.execute(
        fmt::format("Insert Into Documents (DocumentID, DocumentTitle, DocumentNumber) "
                    "Values ('{}', 'Title {}', '{}')",
                    document, document, document == std::string("D1") ? "9" : "1"));
  addManual("M1", "beta");
  addManual("M2", "alpha");
  addManual("M3", "without contents");
  addContents("M1", "D1", 1);
  addContents("M1", "D2", 1);
  addContents("M1", "D3", 0.5);
  addContents("M2", "D1", 7);
  const std::int32_t every = manual().NewQuery()->id();
  const std::string statement =
      "Select Manuals.* , Documents.* from (Manuals Inner Join ManualContents on "
      "Manuals.ManualID = ManualContents.ManualID) Inner Join Documents on "
      "ManualContents.DocumentID = Documents.DocumentID  Order By ManualName, Position, ";
  const auto order = [&] {
    return test::rowsOf(
        *manual().RecordsWithContents(every, "", "", "Manuals.ManualID, Documents.DocumentID"));
  };
  EXPECT_EQ(statementsOf([&] { (void)manual().RecordsWithContents(every); }),
            Texts{statement + "DocumentTitle"});
  EXPECT_EQ(order(), (Texts{"M2|D1", "M1|D3", "M1|D1", "M1|D2"}));
  vesk_->SetAppOption(aoDocSortByNum, true);
  EXPECT_EQ(statementsOf([&] { (void)manual().RecordsWithContents(every); }),
            Texts{statement + "DocumentNumber"});
  EXPECT_EQ(order(), (Texts{"M2|D1", "M1|D3", "M1|D2", "M1|D1"}));
}

TEST_F(Manual, ManualsWithTheirContentsOverAQuery) {
  reg_.execute("Insert Into Documents (DocumentID) Values ('D1')");
  addManual("M1", "Quality");
  addManual("M2", "Safety");
  addContents("M1", "D1", 1);
  addContents("M2", "D1", 1);
  const std::int32_t query = queryFor("Qual");
  std::string sql = " ";
  const std::string sort = "Manuals.ID";
  EXPECT_EQ(statementsOf([&] {
              EXPECT_EQ(
                  test::rowsOf(*manual().RecordsWithContents(query, sort, sql, "Manuals.ManualID")),
                  Texts{"M1"});
            }),
            Texts{"Select Manuals.ManualID from (Manuals Inner Join ManualContents on "
                  "Manuals.ManualID = ManualContents.ManualID) Inner Join Documents on "
                  "ManualContents.DocumentID = Documents.DocumentID Where ManualName Like "
                  "'%Qual%' Order By Manuals.ID"});
  EXPECT_EQ(sql, "Where ManualName Like '%Qual%'") << "written back";
}

TEST_F(Manual, RecordIsTheSetOfOneRow) {
  addManual("M1");
  Ref<Recordset> rs;
  EXPECT_EQ(statementsOf([&] { rs = manual().Record("m1"); }),
            Texts{"Select * From Manuals Where ManualID = 'm1'"});
  EXPECT_EQ(rs->RecordCount(), 1);
  rs->Fields("ManualName")->Value("changed");
  rs->Update();
  EXPECT_EQ(reg_.value("Select ManualName From Manuals"), "changed");
  EXPECT_EQ(manual().Record("M9")->RecordCount(), 0);
}

// ---- loading and saving ----

TEST_F(Manual, LoadDataReadsEveryField) {
  addManual("M1", "Name");
  reg_.execute(
      "Update Manuals Set ManUser1 = 'one', ManUser2 = 'two', ManUser3 = 'three', ManUser4 = "
      "'four', ManUserMemo = 'notes'");
  addManual("M2");
  reg_.execute("Insert Into Manuals (ManualID) Values ('M3')");
  LoadedManual loaded;
  EXPECT_EQ(statementsOf([&] { loaded.from(manual(), "M1"); }),
            Texts{"Select * From Manuals Where ManualID = 'M1'"});
  EXPECT_EQ(loaded.text(), "Name|one|two|three|four|notes");
  LoadedManual nothing;
  nothing.from(manual(), "m3");
  EXPECT_EQ(nothing.text(), "|||||") << "Null loads as nothing, and identifiers ignore case";
}

TEST_F(Manual, LoadDataFromACallersSetRunsNothingAndStandsOnTheRow) {
  for (const char* id : {"M1", "M2", "M3"}) addManual(id, std::string("of ") + id);
  const auto rs = all();
  for (const char* from : {"first", "last", "eof", "bof"}) {
    rs->MoveFirst();
    if (from == std::string("last")) rs->MoveLast();
    if (from == std::string("eof")) rs->Move(5);
    if (from == std::string("bof")) rs->MovePrevious();
    LoadedManual loaded;
    EXPECT_TRUE(statementsOf([&] { loaded.from(manual(), "M2", rs); }).empty());
    EXPECT_EQ(loaded.name, "of M2") << from;
    EXPECT_EQ(rs->AbsolutePosition(), 2) << from;
    EXPECT_EQ(rs->State(), kStateOpen);
  }
}

TEST_F(Manual, SaveDataWritesTheFieldsAndNothingElse) {
  addManual("M1");
  addManual("M2");
  const std::string other = row("M2");
  EXPECT_EQ(statementsOf([&] { save("M1", "x"); }),
            Texts{"Select * From Manuals Where ManualID = 'M1'"});
  EXPECT_EQ(row("M1"), "x name|x1|x2|x3|x4|x notes");
  const auto rs = all();
  EXPECT_TRUE(statementsOf([&] { save("M1", "y", rs); }).empty());
  EXPECT_EQ(row("M1"), "y name|y1|y2|y3|y4|y notes");
  EXPECT_EQ(rs->State(), kStateOpen);
  EXPECT_EQ(rs->EditMode(), kEditNone);
  manual().SaveData("M1", "", "", "", "", "", "");
  EXPECT_EQ(row("M1"), "~|~|~|~|~|~") << "empty text is stored as Null";
  EXPECT_EQ(row("M2"), other);
}

struct NotFound {
  bool saving;
  const char* set;  // "" for none
  const char* id;
  std::int32_t number;
  const char* source;
  const char* description;
};

TEST_F(Manual, WhatIsRaisedWhenThereIsNoSuchManual) {
  addManual("M1");
  addManual("M2");
  addManual("M2");
  const char* none = "Select * From Manuals Where ID = -1";
  const char* some = "Select * From Manuals";
  const char* notInSet = "Manual is not found in current Recordset";
  const char* empty = "No Manuals found in current Recordset";
  const char* notInFile = "Manual is not found in datafile";
  const char* loading = "LoadManualData";
  const char* saving = "SaveManualData";
  const NotFound cases[] = {
      {false, some, "M9", -2147218803, loading, notInSet},
      {false, some, "", -2147218803, loading, notInSet},
      {false, none, "M1", -2147218802, loading, empty},
      {false, "", "M9", -2147218801, loading, notInFile},
      {false, "", "", -2147218801, loading, notInFile},
      {false, "", "M2", -2147218801, loading, notInFile},
      {true, some, "M9", -2147218800, saving, notInSet},
      {true, none, "M1", -2147218799, saving, empty},
      {true, "", "M9", -2147218798, saving, notInFile},
      {true, "", "M2", -2147218798, saving, notInFile},
  };
  const auto before = everything();
  for (const auto& c : cases) {
    const std::string sql = c.set;
    const auto rs = sql.empty() ? Ref<Recordset>() : manual().Records(0, "", sql);
    LoadedManual loaded;
    const auto error = test::errorOf([&] {
      if (c.saving)
        save(c.id, "x", rs);
      else
        loaded.from(manual(), c.id, rs);
    });
    ASSERT_TRUE(error) << c.number;
    EXPECT_EQ(error->number(), c.number);
    EXPECT_EQ(error->source(), c.source);
    EXPECT_EQ(error->description(), c.description);
    EXPECT_EQ(loaded.text(), test::kUntouchedManual);
    if (rs) {
      EXPECT_EQ(rs->State(), kStateOpen) << "the caller's set stays open";
    }
  }
  EXPECT_EQ(everything(), before);
}

// ---- adding ----

TEST_F(Manual, AddNamesTheManualAfterTheUserAndTheMoment) {
  const StoppedClock clock(at(2001, 2, 3, 14, 5, 9));
  std::string id;
  EXPECT_EQ(statementsOf([&] { id = manual().Add("n", "a", "b", "c", "d", "memo"); }),
            Texts{"Select * From Manuals Where ID = -1"});
  EXPECT_EQ(id, "User2020301140509");
  EXPECT_EQ(row(id), "n|a|b|c|d|memo");
  EXPECT_EQ(manual().Add("", "", "", "", "", ""), id) << "two within one second collide";
  EXPECT_EQ(reg_.rows("Select ManualName, ManUser1, ManUserMemo From Manuals Order By ID"),
            (Texts{"n|a|memo", "~|~|~"}));
}

TEST_F(Manual, AddIntoACallersSetLeavesTheNewRowCurrent) {
  addManual("M1");
  const auto rs = all();
  std::string id;
  EXPECT_TRUE(statementsOf([&] { id = manual().Add("n", "", "", "", "", "", rs); }).empty());
  EXPECT_EQ(rs->State(), kStateOpen);
  EXPECT_EQ(rs->RecordCount(), 2);
  EXPECT_EQ(rs->Fields("ManualID")->Value(), Variant(id));
}

// ---- single values ----

TEST_F(Manual, ValuesByIdentifierAndByNumber) {
  addManual("M1", "first");
  addManual("M1", "second");
  EXPECT_EQ(statementsOf([&] {
              EXPECT_EQ(manual().Value("M1", "manualname"), Variant("first"));
              EXPECT_TRUE(manual().Value("M1", "ManUser1").isNull());
              EXPECT_TRUE(manual().Value("M9", "ManualName").isEmpty());
              EXPECT_EQ(manual().IDValue(2, "ManualName"), Variant("second"));
              EXPECT_TRUE(manual().IDValue(-7, "ManualName").isEmpty());
            }),
            (Texts{"Select * From Manuals Where ManualID = 'M1'",
                   "Select * From Manuals Where ManualID = 'M1'",
                   "Select * From Manuals Where ManualID = 'M9'",
                   "Select * From Manuals Where ID = 2", "Select * From Manuals Where ID = -7"}));
  EXPECT_RAISES(kNoSuchItem, (void)manual().Value("M1", "NoSuchColumn"));
  EXPECT_RAISES(kNoSuchItem, (void)manual().IDValue(1, "NoSuchColumn"));
  EXPECT_TRUE(manual().Value("M9", "NoSuchColumn").isEmpty()) << "no row, nothing to ask it for";
}

TEST_F(Manual, SetValueNeverStoresAnything) {
  addManual("M1", "before");
  const auto before = everything();
  for (const Variant& value : {Variant("after"), Variant("before"), Variant(Null), Variant(1)})
    EXPECT_RAISES(kNotAllowed, manual().SetValue("M1", "ManualName", value));
  EXPECT_RAISES(kWrongType, manual().SetValue("M1", "ManualName", std::string(10000, 'x')));
  EXPECT_RAISES(kNoSuchItem, manual().SetValue("M1", "NoSuchColumn", "x"));
  EXPECT_EQ(
      statementsOf([&] { EXPECT_TRUE(manual().SetValue("M9", "ManualName", "x").isEmpty()); }),
      Texts{"Select * From Manuals Where ManualID = 'M9'"});
  EXPECT_TRUE(manual().SetValue("M9", "NoSuchColumn", "x").isEmpty());
  EXPECT_EQ(everything(), before);
}

TEST_F(Manual, HasContents) {
  addManual("M1");
  addContents("M1", "D1", 1);
  addManual("M2");
  EXPECT_EQ(statementsOf([&] { EXPECT_TRUE(manual().HasContents("M1")); }),
            Texts{"Select * From ManualContents Where ManualID = 'M1'"});
  EXPECT_FALSE(manual().HasContents("M2"));
  EXPECT_FALSE(manual().HasContents("M9"));
}

// ---- deleting ----

class DeletedManual : public Manual {
 protected:
  DeletedManual() {
    for (const char* id : {"M1", "M2"}) {
      addManual(id);
      addContents(id, "D1", 1);
      addContents(id, "D2", 2);
    }
  }
  const Texts rest_ = {"Delete * from ManualContents Where ManualID = 'M1'",
                       "Delete * from Personals Where ManualID = 'M1'"};
};

TEST_F(DeletedManual, GoesWithContentsAndCopies) {
  Texts all = {"Delete * From Manuals Where ManualID = 'M1'"};
  all.insert(all.end(), rest_.begin(), rest_.end());
  EXPECT_EQ(statementsOf([&] { manual().Delete("M1"); }), all);
  EXPECT_EQ(rowsOfManual("M1"), "000");
  EXPECT_EQ(rowsOfManual("M2"), "122");
  const auto before = everything();
  manual().Delete("M9");
  manual().Delete("");
  EXPECT_EQ(everything(), before);
}

TEST_F(DeletedManual, GoesFromACallersSet) {
  const auto rs = all();
  rs->MoveLast();
  EXPECT_EQ(statementsOf([&] { manual().Delete("M1", rs); }), rest_);
  EXPECT_EQ(rs->RecordCount(), 1);
  EXPECT_EQ(rs->State(), kStateOpen);
  EXPECT_EQ(rowsOfManual("M1"), "000");
  EXPECT_EQ(rowsOfManual("M2"), "122");
}

TEST_F(DeletedManual, ThatACallersSetDoesNotHoldKeepsItsRow) {
  const auto rs = manual().Records(0, "", "Select * From Manuals Where ManualID = 'M2'");
  EXPECT_EQ(statementsOf([&] { manual().Delete("M1", rs); }), rest_);
  EXPECT_EQ(rs->RecordCount(), 1);
  EXPECT_EQ(rowsOfManual("M1"), "100");
  EXPECT_EQ(rowsOfManual("M2"), "122");
}

TEST_F(DeletedManual, IsDeletedByStatementWhereACallersSetIsEmpty) {
  const auto rs = manual().Records(0, "", "Select * From Manuals Where ID = -1");
  Texts all = {"Delete * From Manuals Where ManualID = 'M1'"};
  all.insert(all.end(), rest_.begin(), rest_.end());
  EXPECT_EQ(statementsOf([&] { manual().Delete("M1", rs); }), all);
  EXPECT_EQ(rowsOfManual("M1"), "000");
}

TEST_F(DeletedManual, CannotGoFromASetThatIsReadOnly) {
  const auto before = everything();
  const auto rs = manual().Records(0, "", "Select Distinct ManualID From Manuals");
  EXPECT_RAISES(kNotAvailable, manual().Delete("M1", rs));
  EXPECT_EQ(everything(), before);
}

// ---- saved queries ----

TEST_F(Manual, SavedQueriesAreCreatedSavedAndLoaded) {
  const auto query = manual().NewQuery();
  const auto other = manual().NewQuery();
  EXPECT_NE(query->id(), other->id());
  EXPECT_EQ(query->GetQueryValue("QueryName"), Variant("<<New Query>>"));
  EXPECT_TRUE(query->GetQueryValue("Field1").isNull());
  query->SetQueryValue("QueryName", "Mine");
  query->SetQueryValue("Field2", "x");
  query->SetQueryValue("Field2Key", 0);
  manual().SaveQuery(query);
  const auto again = manual().GetQuery(query->id());
  EXPECT_EQ(again->id(), query->id());
  EXPECT_EQ(again->JetSQL(), "Where ManUser1 = 'x'");
  EXPECT_EQ(reg_.rows("Select QueryName From ManualQuerys Order By QueryID"),
            (Texts{"Mine", "<<New Query>>"}));
  EXPECT_RAISES(kNoCurrentRow, (void)manual().GetQuery(999));
  manual().DataServer()->Queries()->Delete(query->id());
  EXPECT_RAISES(kNoCurrentRow, manual().SaveQuery(query));
  EXPECT_RAISES(kObjectNotSet, manual().SaveQuery(nullptr));
}

// ---- hostile and mistaken values ----

struct IdOperation {
  const char* name;
  std::function<void(const std::string& id)> run;
  std::int32_t notFound;  // what it raises for a manual that does not exist; 0: nothing
};

class BadManualID : public Manual {
 protected:
  BadManualID() {
    addManual("M1");
    addContents("M1", "D1", 1);
    set_ = all();
  }
  std::vector<IdOperation> operations() {
    return {
        {"Record", [&](const std::string& id) { (void)manual().Record(id); }, 0},
        {"LoadData", [&](const std::string& id) { LoadedManual().from(manual(), id); },
         kErrorBase + 2703},
        {"LoadData from a set",
         [&](const std::string& id) { LoadedManual().from(manual(), id, set_); },
         kErrorBase + 2701},
        {"SaveData", [&](const std::string& id) { save(id, "x"); }, kErrorBase + 2706},
        {"SaveData into a set", [&](const std::string& id) { save(id, "x", set_); },
         kErrorBase + 2704},
        {"Value", [&](const std::string& id) { (void)manual().Value(id, "ManualName"); }, 0},
        {"SetValue", [&](const std::string& id) { manual().SetValue(id, "ManualName", "x"); }, 0},
        {"HasContents", [&](const std::string& id) { (void)manual().HasContents(id); }, 0},
        {"Delete", [&](const std::string& id) { manual().Delete(id); }, 0},
        {"Delete from a set", [&](const std::string& id) { manual().Delete(id, set_); }, 0},
    };
  }
  Ref<Recordset> set_;
};

TEST_F(BadManualID, ThatWouldChangeTheStatementIsRefused) {
  const auto before = everything();
  for (const auto& operation : operations())
    for (const std::string& id :
         {std::string("O'Brien"), std::string("'"), std::string("x' or 'a'='a"),
          std::string(9999, '\''), std::string("caf\xE9"), std::string("M1\0", 3)}) {
      const auto statements = statementsOf([&] {
        EXPECT_RAISES(kSyntax, operation.run(id)) << operation.name << ": " << id.substr(0, 40);
      });
      EXPECT_EQ(statements, Texts{}) << operation.name << " ran something";
      ASSERT_EQ(set_->State(), kStateOpen);
    }
  EXPECT_EQ(everything(), before);
}

TEST_F(BadManualID, ThatNamesNoManual) {
  const auto before = everything();
  for (const auto& operation : operations())
    for (const std::string& id :
         {std::string(), std::string(" "), std::string("nobody"), std::string("M%"),
          std::string("[M1]"), std::string("M1''"), std::string("x'' or ''a''=''a"),
          std::string(10000, 'M'), std::string(10000, '\'')})
      EXPECT_RAISES(operation.notFound, operation.run(id))
          << operation.name << ": " << id.substr(0, 40);
  EXPECT_EQ(everything(), before);
}

TEST_F(BadManualID, WithADoubledApostropheIsTheOneWithASingle) {
  addManual("O''Brien", "before");
  addContents("O''Brien", "D1", 1);
  EXPECT_EQ(manual().Value("O''Brien", "ManualID"), Variant("O'Brien"));
  save("O''Brien", "x");
  EXPECT_EQ(row("O''Brien"), "x name|x1|x2|x3|x4|x notes");
  EXPECT_TRUE(manual().HasContents("O''Brien"));
  manual().Delete("O''Brien");
  EXPECT_EQ(rowsOfManual("O''Brien"), "000");
  EXPECT_EQ(rowsOfManual("M1"), "111");
}

TEST_F(BadManualID, FieldValuesAreStoredWhateverTheyHold) {
  const std::string hostile = "O'Brien's \"best\"; Delete * From Manuals -- #1# [x] {y} ? %\r\n\t";
  manual().SaveData("M1", hostile, hostile, "'", "", hostile, std::string(10000, '\''));
  LoadedManual loaded;
  loaded.from(manual(), "M1");
  EXPECT_EQ(loaded.name, hostile);
  EXPECT_EQ(loaded.user4, hostile);
  EXPECT_EQ(loaded.notes, std::string(10000, '\''));
  const auto before = everything();
  EXPECT_RAISES(kWrongType, manual().SaveData("M1", std::string(10000, 'x'), "", "", "", "", ""));
  EXPECT_RAISES(kWrongType, manual().Add(std::string(10000, 'x'), "", "", "", "", ""));
  EXPECT_EQ(everything(), before);
}

}  // namespace
}  // namespace kv
