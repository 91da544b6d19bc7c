// SPDX-License-Identifier: Apache-2.0
// What the three kinds of queries are: criteria by name, loaded from a record and saved into it.
#include <gtest/gtest.h>

#include "classes/queries/document_query.h"
#include "classes/queries/manual_query.h"
#include "classes/queries/user_query.h"
#include "support/session_test.h"

namespace kv {
namespace {

using test::at;

// ---- all three ----

const char* tableOf(const clsDocumentQuery&) { return "DocumentQuerys"; }
const char* tableOf(const clsManualQuery&) { return "ManualQuerys"; }
const char* tableOf(const clsUserQuery&) { return "UserQuerys"; }

template <class Query>
class AnyQuery : public testing::Test {
 protected:
  // The stored query of a number, as a set of one row; a new one with the name "q" when there is
  // none yet.
  Ref<Recordset> record(int id = 1) {
    const std::string table = tableOf(*query_);
    const std::string sql = "Select * From " + table + " Where QueryID = " + std::to_string(id);
    if (reg_.open(sql)->RecordCount() == 0)
      reg_.execute("Insert Into " + table + " (QueryID, QueryName) Values (" + std::to_string(id) +
                   ", 'q')");
    return reg_.open(sql);
  }
  std::string stored(const std::string& column) {
    return reg_.value("Select " + column + " From " + tableOf(*query_));
  }
  test::TestRegister reg_;
  Ref<Query> query_ = makeRef<Query>();
};

using Kinds = testing::Types<clsDocumentQuery, clsManualQuery, clsUserQuery>;
TYPED_TEST_SUITE(AnyQuery, Kinds);

TYPED_TEST(AnyQuery, AFreshOneHasNoCriteria) {
  for (const char* name : {"QueryID", "QueryName", "Field1", "UserName", "", "no such thing"})
    EXPECT_TRUE(this->query_->GetQueryValue(name).isEmpty()) << name;
}

TYPED_TEST(AnyQuery, ASecondValueReplacesTheFirst) {
  this->query_->SetQueryValue("Field1", "first");
  this->query_->SetQueryValue("Field1", "second");
  EXPECT_EQ(this->query_->GetQueryValue("Field1"), Variant("second"));
  this->query_->SetQueryValue("Field1", Null);
  EXPECT_EQ(this->query_->GetQueryValue("Field1"), Variant(Null));
}

TYPED_TEST(AnyQuery, NamesIgnoreCase) {
  this->query_->SetQueryValue("FIELD1", "one");
  EXPECT_EQ(this->query_->GetQueryValue("field1"), Variant("one"));
  this->query_->SetQueryValue("fIeLd1", "two");
  EXPECT_EQ(this->query_->GetQueryValue("Field1"), Variant("two"));
  this->query_->SetQueryValue("GR\xC3\x96SSE", 7);
  EXPECT_EQ(this->query_->GetQueryValue("gr\xC3\xB6sse"), Variant(7)) << "beyond A to Z too";
}

TYPED_TEST(AnyQuery, ValuesKeepTheirKind) {
  for (const Variant& value :
       {Variant(std::int16_t{2}), Variant(70000), Variant(true), Variant(1.5),
        Variant(at(2001, 3, 9)), Variant("O'Brien"), Variant(""), Variant(Null), Variant()}) {
    this->query_->SetQueryValue("x", value);
    EXPECT_EQ(this->query_->GetQueryValue("x"), value);
  }
}

TYPED_TEST(AnyQuery, SettingAndGettingNeverRaise) {
  const std::vector<std::string> names = {
      "", "'", "a b", std::string(10000, 'n'), "caf\xE9", std::string("a\0b", 3)};
  for (const auto& name : names) {
    EXPECT_NO_THROW(this->query_->SetQueryValue(name, "v"));
    EXPECT_NO_THROW((void)this->query_->GetQueryValue(name));
  }
  EXPECT_EQ(this->query_->GetQueryValue(std::string(10000, 'n')), Variant("v"));
  EXPECT_EQ(this->query_->GetQueryValue(""), Variant("v"));
}

TYPED_TEST(AnyQuery, IsAQueryToWhoeverKnowsOnlyThat) {
  clsQuery& query = *this->query_;
  query.LoadQuery(this->record(4));
  EXPECT_EQ(query.id(), 4);
  query.SetQueryValue("QueryName", "renamed");
  EXPECT_EQ(query.GetQueryValue("QueryName"), Variant("renamed"));
  query.SaveQuery(this->record(4));
  EXPECT_EQ(this->stored("QueryName"), "renamed");
  EXPECT_EQ(query.JetSQL(), "");
  EXPECT_EQ(query.CrystalSQL(), "");
}

TYPED_TEST(AnyQuery, AnswersToTheNamesOfItsOwnInterface) {
  auto& query = *this->query_;
  query.clsquery_LoadQuery(this->record(4));
  EXPECT_EQ(query.clsquery_ID(), 4);
  query.clsquery_SetQueryValue("QueryName", "renamed");
  EXPECT_EQ(query.clsquery_GetQueryValue("queryname"), Variant("renamed"));
  query.clsquery_SaveQuery(this->record(4));
  EXPECT_EQ(this->stored("QueryName"), "renamed");
  // A criterion that each kind has a place for.
  query.clsquery_SetQueryValue("DocType", 0);
  query.clsquery_SetQueryValue("Field1", "X");
  query.clsquery_SetQueryValue("Field1Key", 4);
  query.clsquery_SetQueryValue("Title", "X");
  query.clsquery_SetQueryValue("TitleOperator", 4);
  EXPECT_NE(query.JetSQL(), "");
  EXPECT_EQ(query.clsquery_JetSQL(), query.JetSQL());
  EXPECT_NE(query.CrystalSQL(), query.JetSQL());
  EXPECT_EQ(query.clsquery_CrystalSQL(), query.CrystalSQL());
}

TYPED_TEST(AnyQuery, LoadsEveryColumnOfTheCurrentRow) {
  (void)this->record(1);
  this->reg_.execute(std::string("Update ") + tableOf(*this->query_) + " Set QueryName = 'first'");
  (void)this->record(2);
  const auto rs =
      this->reg_.open(std::string("Select * From ") + tableOf(*this->query_) + " Order By QueryID");
  rs->MoveNext();
  this->query_->LoadQuery(rs);
  EXPECT_EQ(this->query_->id(), 2);
  EXPECT_EQ(this->query_->GetQueryValue("QueryName"), Variant("q"));
  for (std::int32_t i = 0; i < rs->Fields().Count(); ++i) {
    const auto field = rs->Fields(i);
    EXPECT_EQ(this->query_->GetQueryValue(field->Name()), field->Value()) << field->Name();
    EXPECT_FALSE(this->query_->GetQueryValue(field->Name()).isEmpty()) << "Null, not absent";
  }
  EXPECT_EQ(rs->AbsolutePosition(), 2) << "and leaves the set where it stood";
}

TYPED_TEST(AnyQuery, TheNumberIsReadAsOne) {
  EXPECT_RAISES(kInvalidCall, (void)this->query_->id());
  this->query_->SetQueryValue("QueryID", "12");
  EXPECT_EQ(this->query_->id(), 12);
  this->query_->SetQueryValue("QueryID", "twelve");
  EXPECT_RAISES(kTypeMismatch, (void)this->query_->id());
}

TYPED_TEST(AnyQuery, SavingNeverWritesTheNumber) {
  this->query_->LoadQuery(this->record(1));
  this->query_->SetQueryValue("QueryID", 99);
  this->query_->SetQueryValue("QueryName", "renamed");
  this->query_->SaveQuery(this->record(1));
  EXPECT_EQ(this->stored("QueryID"), "1");
  EXPECT_EQ(this->stored("QueryName"), "renamed");
}

TYPED_TEST(AnyQuery, AColumnOfAnotherCaseIsWritten) {
  const auto rs = Recordset::create();
  rs->Fields().Append("queryid", 3);
  rs->Open();
  rs->AddNew();
  rs->Update();
  this->query_->SetQueryValue("QueryID", 7);
  this->query_->SaveQuery(rs);
  EXPECT_EQ(rs->Fields("queryid")->Value(), Variant(7));
}

TYPED_TEST(AnyQuery, AColumnWithoutACriterionCannotBeSaved) {
  const auto rs = this->record(1);
  this->query_->SetQueryValue("QueryName", "renamed");
  EXPECT_RAISES(kInvalidCall, this->query_->SaveQuery(rs));
  EXPECT_EQ(rs->State(), kStateOpen);
}

TYPED_TEST(AnyQuery, ARecordThatIsGoneCannotBeSavedInto) {
  this->query_->LoadQuery(this->record(1));
  this->reg_.execute(std::string("Delete * From ") + tableOf(*this->query_));
  const auto gone = this->reg_.open(std::string("Select * From ") + tableOf(*this->query_));
  this->query_->SetQueryValue("QueryName", "renamed");
  EXPECT_RAISES(kNoCurrentRow, this->query_->SaveQuery(gone));
}

TYPED_TEST(AnyQuery, SavesIntoTheRowOnWhichTheSetStands) {
  (void)this->record(1);
  this->query_->LoadQuery(this->record(2));
  this->query_->SetQueryValue("QueryName", "renamed");
  const auto rs =
      this->reg_.open(std::string("Select * From ") + tableOf(*this->query_) + " Order By QueryID");
  rs->MoveLast();
  this->query_->SaveQuery(rs);
  EXPECT_EQ(rs->State(), kStateOpen);
  EXPECT_EQ(rs->EditMode(), kEditNone);
  EXPECT_EQ(rs->AbsolutePosition(), 2);
  EXPECT_EQ(
      this->reg_.rows(std::string("Select QueryID, QueryName From ") + tableOf(*this->query_)),
      (test::Texts{"1|q", "2|renamed"}));
}

// A set of text columns that belongs to no database, with one row.
Ref<Recordset> freeStanding(const std::vector<std::pair<std::string, Variant>>& row) {
  constexpr std::int32_t kText = 202;
  const auto rs = Recordset::create();
  for (const auto& [name, value] : row) rs->Fields().Append(name, kText, 255);
  rs->Open();
  rs->AddNew();
  for (const auto& [name, value] : row) rs->Fields(name)->Value(value);
  rs->Update();
  return rs;
}

TYPED_TEST(AnyQuery, LoadsAndSavesFreeStandingSetsToo) {
  const auto rs = freeStanding({{"Field1", "x"}, {"anything else", Null}});
  this->query_->LoadQuery(rs);
  EXPECT_EQ(this->query_->GetQueryValue("field1"), Variant("x"));
  EXPECT_EQ(this->query_->GetQueryValue("anything else"), Variant(Null));
  this->query_->SetQueryValue("Anything Else", "y");
  this->query_->SetQueryValue("Field1", "");
  this->query_->SaveQuery(rs);
  EXPECT_EQ(test::rowOf(*rs), "~|y");
  EXPECT_EQ(rs->EditMode(), kEditNone);
}

// ---- where they differ ----

class QueryKinds : public test::FaultySessionTest {
 protected:
  Ref<Recordset> open(const std::string& sql) { return vesk_->GetRecordset(sql); }
  Ref<Recordset> record(const std::string& table, int id = 1) {
    return open("Select * From " + table + " Where QueryID = " + std::to_string(id));
  }
  void add(const std::string& table, const std::string& columns, const std::string& values) {
    reg_.execute("Insert Into " + table + " (QueryName, " + columns + ") Values ('q', " + values +
                 ")");
  }
};

TEST_F(QueryKinds, ADocumentQueryFromAnEmptySetHasEveryCriterionNull) {
  clsDocumentQuery query;
  const auto rs = open("Select * From DocumentQuerys");
  query.LoadQuery(rs);
  for (std::int32_t i = 0; i < rs->Fields().Count(); ++i)
    EXPECT_EQ(query.GetQueryValue(rs->Fields(i)->Name()), Variant(Null)) << rs->Fields(i)->Name();
  EXPECT_EQ(query.id(), 0);
  EXPECT_EQ(query.JetSQL(), "");
  EXPECT_EQ(query.CrystalSQL(), "");
}

TEST_F(QueryKinds, TheOthersCannotBeLoadedFromAnEmptySet) {
  clsManualQuery manual;
  manual.SetQueryValue("Field1", "before");
  EXPECT_RAISES(kNoCurrentRow, manual.LoadQuery(open("Select * From ManualQuerys")));
  EXPECT_TRUE(manual.GetQueryValue("Field1").isEmpty()) << "the old criteria are gone by then";
  clsUserQuery user;
  EXPECT_RAISES(kNoCurrentRow, user.LoadQuery(open("Select * From UserQuerys")));
}

TEST_F(QueryKinds, NullAsANumberIsZeroForDocumentsOnly) {
  clsDocumentQuery document;
  document.SetQueryValue("QueryID", Null);
  EXPECT_EQ(document.id(), 0);
  clsManualQuery manual;
  manual.SetQueryValue("QueryID", Null);
  EXPECT_RAISES(kInvalidNull, (void)manual.id());
  clsUserQuery user;
  user.SetQueryValue("QueryID", Null);
  EXPECT_RAISES(kInvalidNull, (void)user.id());
}

TEST_F(QueryKinds, OnlyAManualQueryCanBeLoadedAgain) {
  add("DocumentQuerys", "Field1", "'one'");
  add("ManualQuerys", "Field1", "'one'");
  add("ManualQuerys", "Field1", "'two'");
  add("UserQuerys", "Alias", "'one'");

  clsDocumentQuery document;
  document.LoadQuery(record("DocumentQuerys"));
  reg_.execute("Update DocumentQuerys Set Field1 = 'changed'");
  EXPECT_RAISES(kDuplicateKey, document.LoadQuery(record("DocumentQuerys")));
  EXPECT_EQ(document.GetQueryValue("Field1"), Variant("one"));
  EXPECT_RAISES(kDuplicateKey, document.LoadQuery(record("DocumentQuerys", 999)))
      << "from an empty set neither";

  clsUserQuery user;
  user.LoadQuery(record("UserQuerys"));
  EXPECT_RAISES(kDuplicateKey, user.LoadQuery(record("UserQuerys")));
  EXPECT_EQ(user.GetQueryValue("Alias"), Variant("one"));

  clsManualQuery manual;
  manual.SetQueryValue("mine", "x");
  manual.LoadQuery(record("ManualQuerys", 1));
  manual.LoadQuery(record("ManualQuerys", 2));
  EXPECT_EQ(manual.id(), 2);
  EXPECT_EQ(manual.GetQueryValue("Field1"), Variant("two"));
  EXPECT_TRUE(manual.GetQueryValue("mine").isEmpty()) << "only the second record's values are left";
}

TEST_F(QueryKinds, AFailedLoadLeavesWhatWasLoadedSoFar) {
  add("DocumentQuerys", "DocType, Field1", "1, 'one'");
  clsDocumentQuery document;
  document.SetQueryValue("doctype", 7);
  EXPECT_RAISES(kDuplicateKey, document.LoadQuery(record("DocumentQuerys")));
  EXPECT_EQ(document.id(), 1);
  EXPECT_EQ(document.GetQueryValue("QueryName"), Variant("q"));
  EXPECT_EQ(document.GetQueryValue("DocType"), Variant(7));
  EXPECT_TRUE(document.GetQueryValue("Field1").isEmpty());
}

struct Saved {
  Variant value;
  const char* document;
  const char* manual;
  const char* user;
};

TEST_F(QueryKinds, WhatIsStoredAsNull) {
  const Saved cases[] = {{"x", "x", "x", "x"},     {"", "~", "~", "~"},
                         {Null, "~", "~", "~"},    {Variant(), "~", "~", "~"},
                         {"   ", "   ", "~", "~"}, {" x ", " x ", " x ", " x "},
                         {"\t", "\t", "\t", "\t"}, {"O'Brien", "O'Brien", "O'Brien", "O'Brien"},
                         {5, "5", "5", "5"}};
  for (const auto& c : cases) {
    for (const char* table : {"DocumentQuerys", "ManualQuerys", "UserQuerys"})
      reg_.execute(std::string("Delete * From ") + table);
    add("DocumentQuerys", "QueryID, Field1", "1, 'before'");
    add("ManualQuerys", "QueryID, Field1", "1, 'before'");
    add("UserQuerys", "QueryID, Alias", "1, 'before'");
    clsDocumentQuery document;
    document.LoadQuery(record("DocumentQuerys"));
    document.SetQueryValue("Field1", c.value);
    document.SaveQuery(record("DocumentQuerys"));
    EXPECT_EQ(reg_.value("Select Field1 From DocumentQuerys"), c.document);
    clsManualQuery manual;
    manual.LoadQuery(record("ManualQuerys"));
    manual.SetQueryValue("Field1", c.value);
    manual.SaveQuery(record("ManualQuerys"));
    EXPECT_EQ(reg_.value("Select Field1 From ManualQuerys"), c.manual);
    clsUserQuery user;
    user.LoadQuery(record("UserQuerys"));
    user.SetQueryValue("Alias", c.value);
    user.SaveQuery(record("UserQuerys"));
    EXPECT_EQ(reg_.value("Select Alias From UserQuerys"), c.user);
  }
}

TEST_F(QueryKinds, ADocumentQueryIsSavedAsItIs) {
  add("DocumentQuerys", "Field1, Rev4, Rev4Key, Rev5", "'old', #3/9/2001#, 3, #4/1/2001#");
  clsDocumentQuery query;
  query.LoadQuery(record("DocumentQuerys"));
  query.SetQueryValue("QueryName", "Mine");
  query.SetQueryValue("DocType", 1);
  query.SetQueryValue("Field1", "");
  query.SetQueryValue("Field2", "A'B");
  query.SetQueryValue("Field2Key", "1");
  query.SetQueryValue("Rev4", at(2002, 1, 2));
  query.SetQueryValue("Rev5", Null);
  query.SaveQuery(record("DocumentQuerys"));
  EXPECT_EQ(reg_.value("Select QueryID, QueryName, DocType, Field1, Field2, Field2Key, Rev4, "
                       "Rev4Key, Rev5 From DocumentQuerys"),
            "1|Mine|1|~|A'B|1|1/2/2002|3|~");
  clsDocumentQuery again;
  again.LoadQuery(record("DocumentQuerys"));
  EXPECT_EQ(again.JetSQL(),
            "Where Controlled = False and DocumentNumber Like '%A''B%' and "
            "Documents.EffectiveDate > #1/2/2002# and Documents.EffectiveDate < ##");
}

TEST_F(QueryKinds, DocumentAndManualQueriesAreSavedByOneUpdate) {
  add("DocumentQuerys", "Field1", "'one'");
  add("ManualQuerys", "Field1", "'one'");
  clsDocumentQuery document;
  document.LoadQuery(record("DocumentQuerys"));
  document.SetQueryValue("Field1", "a");
  document.SetQueryValue("Field2", "b");
  document.SetQueryValue("Field3", "c");
  const auto documentRecord = record("DocumentQuerys");
  EXPECT_EQ(writesOf([&] { document.SaveQuery(documentRecord); }), 1);
  clsManualQuery manual;
  manual.LoadQuery(record("ManualQuerys"));
  manual.SetQueryValue("Field1", "a");
  manual.SetQueryValue("Field2", "b");
  const auto manualRecord = record("ManualQuerys");
  EXPECT_EQ(writesOf([&] { manual.SaveQuery(manualRecord); }), 1);
}

TEST_F(QueryKinds, AUserQueryIsSavedByOneUpdateForEveryChangedColumn) {
  add("UserQuerys", "Alias, Title, User00, User00Operator", "'a', 't', 'u', 1");
  clsUserQuery query;
  query.LoadQuery(record("UserQuerys"));
  const auto rs = record("UserQuerys");
  const auto save = [&] { return writesOf([&] { query.SaveQuery(rs); }); };
  EXPECT_EQ(save(), 0) << "nothing has changed";
  query.SetQueryValue("Alias", "b");
  EXPECT_EQ(save(), 1);
  EXPECT_EQ(save(), 0) << "it is saved by now";
  query.SetQueryValue("Alias", Null);
  query.SetQueryValue("Title", "T");
  query.SetQueryValue("User01", "new");
  query.SetQueryValue("User00Operator", 2);
  EXPECT_EQ(save(), 4);
  EXPECT_EQ(reg_.value("Select Alias, Title, User00, User00Operator, User01 From UserQuerys"),
            "~|T|u|2|new");
  EXPECT_EQ(save(), 0);
  query.SetQueryValue("Alias", "  ");
  EXPECT_EQ(save(), 1) << "one of the two is Null: Null is written for the blanks";
  EXPECT_EQ(reg_.value("Select Alias From UserQuerys"), "~");
}

TEST_F(QueryKinds, AUserQuerysColumnsAreSavedOneByOne) {
  add("UserQuerys", "Alias, Title", "'a', 't'");
  clsUserQuery query;
  query.LoadQuery(record("UserQuerys"));
  query.SetQueryValue("Alias", "saved");
  query.SetQueryValue("Title", "not saved");
  const auto rs = record("UserQuerys");
  faults_->failWriteAfter = 1;
  EXPECT_RAISES(kEngineFailure, query.SaveQuery(rs));
  EXPECT_EQ(reg_.value("Select Alias, Title From UserQuerys"), "saved|t");
}

TEST_F(QueryKinds, WhatTheRecordRefusesReachesTheCaller) {
  add("DocumentQuerys", "Field1", "'one'");
  clsDocumentQuery query;
  query.LoadQuery(record("DocumentQuerys"));
  query.SetQueryValue("Field1", "two");
  query.SetQueryValue("Rev4", "some day");
  EXPECT_RAISES(kWrongType, query.SaveQuery(record("DocumentQuerys")));
  EXPECT_EQ(reg_.value("Select Field1 From DocumentQuerys"), "one") << "nothing is half saved";
}

TEST_F(QueryKinds, ASavingThatFailsHalfWayLeavesTheSetAsItWas) {
  add("DocumentQuerys", "Field1", "'one'");
  add("ManualQuerys", "Field1", "'one'");
  clsDocumentQuery ofDocuments;
  clsManualQuery ofManuals;
  const std::pair<const char*, clsQuery*> kinds[] = {{"DocumentQuerys", &ofDocuments},
                                                     {"ManualQuerys", &ofManuals}};
  for (const auto& kind : kinds) {
    const char* const table = kind.first;
    clsQuery* const query = kind.second;
    SCOPED_TRACE(table);
    query->LoadQuery(record(table));
    query->SetQueryValue("Field1", "half");
    query->SetQueryValue("Field2", std::string(300, 'x'));
    const auto rs = record(table);
    EXPECT_RAISES(kWrongType, query->SaveQuery(rs));
    EXPECT_EQ(rs->EditMode(), kEditNone);
    rs->Fields("QueryName")->Value("pending");
    EXPECT_RAISES(kWrongType, query->SaveQuery(rs));
    EXPECT_EQ(rs->EditMode(), kEditInProgress);
    EXPECT_EQ(rs->Fields("Field1")->Value(), Variant("one"));
    EXPECT_EQ(rs->Fields("QueryName")->Value(), Variant("pending")) << "the caller's own stays his";
    rs->MoveFirst();
    EXPECT_EQ(reg_.value(std::string("Select QueryName, Field1 From ") + table), "pending|one");
  }
}

TEST_F(QueryKinds, FieldTypesAreLoadedOnce) {
  reg_.execute("Delete * From UserConfig");
  clsUserQuery query;
  EXPECT_RAISES(kNoCurrentRow, query.LoadFieldTypes(open("Select * From UserConfig")));
  reg_.execute("Insert Into UserConfig (User00, TypeUser00, TypeUser01) Values ('Size', 1, 2)");
  clsUserQuery typed;
  typed.LoadFieldTypes(open("Select * From UserConfig"));
  EXPECT_RAISES(kDuplicateKey, typed.LoadFieldTypes(open("Select * From UserConfig")));
  EXPECT_TRUE(typed.GetQueryValue("TypeUser00").isEmpty()) << "types are no criteria";
}

}  // namespace
}  // namespace kv
