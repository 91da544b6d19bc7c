// SPDX-License-Identifier: Apache-2.0
// The saved queries of clsVeskDocument.
#include <gtest/gtest.h>

#include "classes/documents/document_session.h"

namespace kv {
namespace {

using test::Texts;

class QueryAccess : public test::DocumentSession<test::SessionTest> {
 protected:
  QueryAccess() { logIn("Bert"); }  // no right is tested
};

TEST_F(QueryAccess, TwoNewQueriesHaveOneNameAndTwoNumbers) {
  const auto first = document().AddQuery();
  const auto second = document().AddQuery();
  EXPECT_NE(first->id(), second->id());
  for (const auto& query : {first, second}) {
    EXPECT_EQ(query->GetQueryValue("QueryName"), Variant("<<New Query>>"));
    EXPECT_EQ(query->GetQueryValue("QueryID"), Variant(query->id()));
    EXPECT_EQ(query->GetQueryValue("Field1"), Variant(Null)) << "there are no criteria yet";
    EXPECT_EQ(query->JetSQL(), "");
  }
  EXPECT_EQ(reg_.rows("Select QueryID, QueryName From DocumentQuerys Order By QueryID"),
            (Texts{std::to_string(first->id()) + "|<<New Query>>",
                   std::to_string(second->id()) + "|<<New Query>>"}));
}

TEST_F(QueryAccess, WhatIsSavedIsLoadedAgain) {
  const auto query = document().AddQuery();
  query->SetQueryValue("QueryName", "Mine");
  query->SetQueryValue("DocType", 0);
  query->SetQueryValue("Field1", "O'Brien");
  query->SetQueryValue("Field1Key", 1);
  query->SetQueryValue("Rev4", test::at(2001, 3, 9));
  query->SetQueryValue("Rev4Key", 1);
  EXPECT_TRUE(document().GetQuery(query->id())->JetSQL().empty()) << "nothing is stored before";
  document().SaveQuery(query);
  const auto again = document().GetQuery(query->id());
  EXPECT_NE(again, query);
  EXPECT_EQ(again->id(), query->id());
  EXPECT_EQ(again->GetQueryValue("QueryName"), Variant("Mine"));
  EXPECT_EQ(again->JetSQL(),
            "Where Controlled <> 0 and DocumentTitle Like '%O''Brien%' and "
            "Documents.EffectiveDate > #3/9/2001#");
  EXPECT_EQ(again->JetSQL(), query->JetSQL());
  addDocument("D1", "Notes of O''Brien", "Controlled = True, EffectiveDate = #3/10/2001#");
  addDocument("D2", "Notes of o''brien", "Controlled = True, EffectiveDate = #3/9/2001#");
  addDocument("D3", "Notes of Brien", "Controlled = True, EffectiveDate = #3/10/2001#");
  EXPECT_EQ(test::rowsOf(*document().Records(query->id(), "", "", "DocumentID")), Texts{"D1"});
}

TEST_F(QueryAccess, SavingOneLeavesTheOthers) {
  const auto first = document().AddQuery();
  const auto second = document().AddQuery();
  second->SetQueryValue("Field1", "second");
  document().SaveQuery(second);
  EXPECT_EQ(reg_.rows("Select Field1 From DocumentQuerys Order By QueryID"),
            (Texts{"~", "second"}));
}

TEST_F(QueryAccess, AQueryThatDoesNotExistIsAllNull) {
  const auto query = document().GetQuery(999);
  EXPECT_EQ(query->id(), 0);
  EXPECT_EQ(query->GetQueryValue("QueryName"), Variant(Null));
  EXPECT_EQ(query->JetSQL(), "");
  EXPECT_RAISES(kNoCurrentRow, document().SaveQuery(query)) << "there is no record to save it in";
}

TEST_F(QueryAccess, AQueryThatWasDeletedMeanwhileCannotBeSaved) {
  const auto query = document().AddQuery();
  const auto other = document().AddQuery();
  document().DeleteQuery(query->id());
  EXPECT_EQ(reg_.value("Select QueryID From DocumentQuerys"), std::to_string(other->id()));
  query->SetQueryValue("Field1", "x");
  EXPECT_RAISES(kNoCurrentRow, document().SaveQuery(query));
  EXPECT_EQ(reg_.value("Select Field1 From DocumentQuerys"), "~");
}

TEST_F(QueryAccess, DeletingWhatIsNotThereIsNoError) {
  const auto query = document().AddQuery();
  for (const std::int32_t id : {0, -1, 999}) EXPECT_NO_THROW(document().DeleteQuery(id));
  EXPECT_EQ(reg_.value("Select QueryID From DocumentQuerys"), std::to_string(query->id()));
}

TEST_F(QueryAccess, AQueryOfNobodysMakingHasNoNumber) {
  EXPECT_RAISES(kInvalidCall, document().SaveQuery(makeRef<clsDocumentQuery>()));
}

TEST_F(QueryAccess, QueriesOfManualsAreOthers) {
  const auto query = document().AddQuery();
  const std::int32_t manual = vesk_->Manual()->DataServer()->Queries()->Add("manuals'");
  EXPECT_EQ(query->id(), manual) << "numbers are those of each store";
  document().DeleteQuery(query->id());
  EXPECT_EQ(reg_.value("Select QueryName From ManualQuerys"), "manuals'");
}

TEST_F(QueryAccess, OtherSessionsShareThem) {
  const auto query = document().AddQuery();
  const test::TestSession other;
  other->Login("Anna", "secret", reg_.path());
  EXPECT_EQ(other->Document()->GetQuery(query->id())->id(), query->id());
  query->SetQueryValue("QueryName", "shared");
  document().SaveQuery(query);
  EXPECT_EQ(other->Document()->GetQuery(query->id())->GetQueryValue("QueryName"),
            Variant("shared"));
}

TEST_F(QueryAccess, TheStoresOwnStatementsAreNotObserved) {
  EXPECT_TRUE(statementsOf([&] {
                const auto query = document().AddQuery();
                document().SaveQuery(query);
                (void)document().GetQuery(query->id());
                document().DeleteQuery(query->id());
              }).empty());
}

}  // namespace
}  // namespace kv
