// SPDX-License-Identifier: Apache-2.0
// Saved queries as those who keep a register make and change them.
#include "classes/rights/rights.h"
#include "desk/desk_register.h"
#include "desk/documents/view_documents.h"
#include "desk/queries/save_query.h"
#include "desk/queries/view_queries.h"

namespace kv {
namespace {

using desk::kDocumentQueries;
using desk::kManualQueries;
using desk::kUserQueries;
using test::rowsOf;
using Rows = std::vector<std::string>;

std::string right(std::int16_t number) { return std::string(userRightText(number)); }

class DeskQueries : public test::DeskTest {};

TEST_F(DeskQueries, OneIsAddedAndDocumentsAreListedByIt) {
  const auto session = as("Bert", {urCreateNewdocumentquery, urViewDocumentList});
  const auto saved =
      desk::addQuery(session, kDocumentQueries, "Plans", {.where = {"title", "contains", "plan"}});
  EXPECT_FALSE(saved.known);
  EXPECT_EQ(rowsOf(*desk::listDocuments(session, {.query = "Plans", .fields = "DocumentID"})),
            Rows{"D1"});
  expectRefused(5, "There is a document query 'Plans' already.",
                [&] { desk::addQuery(session, kDocumentQueries, "Plans", {}); });
  const auto again =
      desk::setQuery(session, kDocumentQueries, "Plans", {.where = {"title", "=", "plan"}});
  EXPECT_TRUE(again.known);
  EXPECT_EQ(again.query, saved.query);
  EXPECT_EQ(desk::listDocuments(session, {.query = "Plans"})->RecordCount(), 0);
}

TEST_F(DeskQueries, OneIsChangedAndDeleted) {
  const auto session = as("Anna");
  const auto saved =
      desk::addQuery(session, kManualQueries, "Books", {.where = {"name", "contains", "book"}});
  EXPECT_EQ(desk::editQuery(session, kManualQueries, "Books", {.name = "Handbooks"}), saved.query);
  EXPECT_THAT(rowsOf(*desk::viewQuery(session, kManualQueries, "Handbooks"))[0],
              testing::AllOf(testing::HasSubstr("Handbooks"), testing::HasSubstr("book")));
  desk::editQuery(session, kManualQueries, "Handbooks", {.criteria = {.drop = {"name"}}});
  EXPECT_EQ(desk::listQueries(session, kManualQueries)->RecordCount(), 1);
  EXPECT_EQ(desk::deleteQuery(session, kManualQueries, "Handbooks"), saved.query);
  EXPECT_EQ(desk::listQueries(session, kManualQueries)->RecordCount(), 0);
  expectRefused(5, "There is no manual query 'Handbooks'.",
                [&] { desk::deleteQuery(session, kManualQueries, "Handbooks"); });
}

TEST_F(DeskQueries, CriteriaMakeSense) {
  const auto session = as("Anna");
  const auto wrong = [&](const std::string& text, const desk::QueryCriteria& criteria,
                         const desk::QueryKind& kind = kDocumentQueries) {
    expectWrongInput(text, [&] { desk::addQuery(session, kind, "Q", criteria); });
  };
  wrong(
      "there is no column 'colour' to search by: title, number, field1 to field4, level, "
      "effective",
      {.where = {"colour", "=", "red"}});
  wrong("there is no operator '~': =, contains, >, <, <>", {.where = {"title", "~", "x"}});
  wrong("an empty value is no criterion for 'title'", {.where = {"title", "=", ""}});
  wrong("--on does not go with --after and --before", {.on = "2024-01-01", .after = "2024-01-01"});
  expectWrongInput("a query needs a name",
                   [&] { desk::addQuery(session, kDocumentQueries, "", {}); });
  expectWrongInput("nothing to change: give a name or at least one criterion",
                   [&] { desk::editQuery(session, kDocumentQueries, "All documents", {}); });
  reg_.execute("Update UserConfig Set TypeUser02 = 2");
  EXPECT_RAISES(5, desk::addQuery(session, kUserQueries, "Q", {.where = {"user02", "=", "soon"}}));
  EXPECT_EQ(reg_.rows("Select QueryID From UserQuerys"), Rows{});
}

TEST_F(DeskQueries, TheyTakeTheirRights) {
  const auto session = as("Bert");
  for (const auto& kind : {kDocumentQueries, kManualQueries, kUserQueries}) {
    expectDenied(right(kind.changeRight), [&] { desk::addQuery(session, kind, "Q", {}); });
    expectDenied(right(kind.changeRight), [&] { desk::setQuery(session, kind, "Q", {}); });
    expectDenied(right(kind.changeRight),
                 [&] { desk::editQuery(session, kind, "Q", {.name = "R"}); });
    expectDenied(right(kind.changeRight), [&] { desk::deleteQuery(session, kind, "Q"); });
    expectDenied(right(kind.viewRight), [&] { (void)desk::listQueries(session, kind); });
    expectDenied(right(kind.viewRight), [&] { (void)desk::viewQuery(session, kind, "Q"); });
  }
}

}  // namespace
}  // namespace kv
