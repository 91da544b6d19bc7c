// SPDX-License-Identifier: Apache-2.0
// Sets as C++ programs read and write them: rows as a range, values by name.
#include "recordset/rows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/error.h"
#include "support/error_check.h"
#include "support/test_register.h"

namespace kv {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class RowRange : public testing::Test {
 protected:
  RowRange() {
    reg_.execute(
        "Insert Into Documents (DocumentID, DocumentTitle, DocumentNumber, EffectiveDate, "
        "Controlled, CurrentRevID) "
        "Values ('d1', 'One', 'N-1', #2024-02-29#, True, 7)");
    reg_.execute("Insert Into Documents (DocumentID, DocumentTitle) Values ('d2', 'Two')");
    reg_.execute("Insert Into Documents (DocumentID, DocumentTitle) Values ('d3', 'Three')");
  }
  [[nodiscard]] Ref<Recordset> documents() const {
    return reg_.open("Select * From Documents Order By DocumentID");
  }
  test::TestRegister reg_;
};

TEST_F(RowRange, GoesThroughAllRowsFromTheFirst) {
  const auto rs = documents();
  rs->MoveLast();
  std::vector<std::string> titles;
  for (const auto& row : rs->rows()) titles.emplace_back(row.text("DocumentTitle"));
  EXPECT_THAT(titles, ElementsAre("One", "Two", "Three"));
  EXPECT_TRUE(rs->Eof());
  titles.clear();
  for (const auto& row : rs->rows()) titles.emplace_back(row.text("DOCUMENTtitle"));
  EXPECT_EQ(titles.size(), 3U) << "again, and by any spelling";
}

TEST_F(RowRange, OfAnEmptySetHasNone) {
  const auto rs = reg_.open("Select * From Documents Where DocumentID = 'none'");
  for (const auto& row : rs->rows()) FAIL() << row.text("DocumentID");
  EXPECT_TRUE(rs->Eof());
}

TEST_F(RowRange, LeftEarlyLeavesTheSetAtItsRow) {
  const auto rs = documents();
  for (const auto& row : rs->rows())
    if (row.text("DocumentID") == "d2") break;
  EXPECT_EQ(*rs->Fields("DocumentTitle")->Value().as<std::string>(), "Two");
}

TEST_F(RowRange, GivesValuesOfTheTypesAskedFor) {
  const auto rs = documents();
  auto range = rs->rows();
  const Row& row = *range.begin();
  EXPECT_EQ(row.get<std::string>("DocumentTitle"), "One");
  EXPECT_EQ(row.get<std::int32_t>("CurrentRevID"), 7);
  EXPECT_EQ(row.get<double>("CurrentRevID"), 7.0);
  EXPECT_TRUE(row.get<bool>("Controlled"));
  EXPECT_EQ(row.get<Date>("EffectiveDate"), *parseDate("2024-02-29"));
  EXPECT_EQ(row.get<std::optional<Date>>("EffectiveDate"), *parseDate("2024-02-29"));
  EXPECT_FALSE(row.isNull("CurrentRevID"));
  EXPECT_EQ(row.value("CurrentRevID"), Variant(7));
}

TEST_F(RowRange, GivesNullToAnOptionalAndRaisesWithoutOne) {
  const auto rs = documents();
  rs->MoveLast();
  for (const auto& row : rs->rows()) {
    if (row.text("DocumentID") != "d3") continue;
    EXPECT_EQ(row.get<std::optional<std::string>>("DocumentNumber"), std::nullopt);
    EXPECT_EQ(row.get<std::optional<Date>>("EffectiveDate"), std::nullopt);
    EXPECT_TRUE(row.isNull("DocumentNumber"));
    EXPECT_EQ(row.text("DocumentNumber"), "");
    EXPECT_RAISES(kInvalidNull, (void)row.get<std::string>("DocumentNumber"));
    EXPECT_RAISES(kInvalidNull, (void)row.get<Date>("EffectiveDate"));
    EXPECT_THAT(test::descriptionOf([&] { (void)row.get<Date>("EffectiveDate"); }),
                HasSubstr("EffectiveDate"));
  }
}

TEST_F(RowRange, RefusesTypesThatDoNotFitWhateverTheRowHolds) {
  const auto rs = documents();
  for (const auto& row : rs->rows()) {
    EXPECT_RAISES(kTypeMismatch, (void)row.get<std::int32_t>("DocumentTitle"));
    EXPECT_RAISES(kTypeMismatch, (void)row.get<std::string>("CurrentRevID"));
    EXPECT_RAISES(kTypeMismatch, (void)row.get<std::int16_t>("CurrentRevID"));
    EXPECT_RAISES(kTypeMismatch, (void)row.get<float>("CurrentRevID"));
    EXPECT_RAISES(kTypeMismatch, (void)row.get<bool>("CurrentRevID"));
    EXPECT_RAISES(kTypeMismatch, (void)row.get<double>("EffectiveDate"));
    EXPECT_RAISES(kTypeMismatch, (void)row.get<std::optional<Date>>("DocumentTitle"));
    EXPECT_RAISES(kNoSuchItem, (void)row.text("NoSuchColumn"));
  }
}

TEST_F(RowRange, TextsOfSeveralColumnsStandSideBySide) {
  reg_.execute("Update Documents Set CurrentRevID = 12, ID = ID Where DocumentID = 'd1'");
  const auto rs = documents();
  auto range = rs->rows();
  const auto at = range.begin();
  const auto revision = at->text("CurrentRevID");
  const auto date = at->text("EffectiveDate");
  for (std::int32_t i = 0; i < rs->Fields().Count(); ++i) {
    const std::string& name = rs->Fields(i)->Name();
    if (name != "CurrentRevID" && name != "EffectiveDate") (void)at->text(name);
  }
  for (const char* spelling : {"controlled", "CONTROLLED", "Controlled"})
    EXPECT_EQ(at->text(spelling), "True");
  EXPECT_EQ(revision, "12");
  EXPECT_EQ(date, "2/29/2024");
  rs->Fields("DocumentTitle")->Value("Edited");
  rs->Fields("DocumentNumber")->Value("N-2");
  const auto title = at->text("DocumentTitle");
  const auto number = at->text("DocumentNumber");
  EXPECT_EQ(title, "Edited");
  EXPECT_EQ(number, "N-2");
}

TEST_F(RowRange, SavesWhatIsPendingWhenItBegins) {
  const auto rs = documents();
  rs->Fields("DocumentTitle")->Value("Changed");
  std::vector<std::string> titles;
  for (const auto& row : rs->rows()) titles.emplace_back(row.text("DocumentTitle"));
  EXPECT_THAT(titles, ElementsAre("Changed", "Two", "Three"));
}

TEST_F(RowRange, IsRefusedByAClosedSet) {
  const auto rs = documents();
  rs->Close();
  auto range = rs->rows();
  EXPECT_RAISES(kClosed, (void)range.begin());
}

TEST_F(RowRange, ARowIsAddedWithItsValuesOrNotAtAll) {
  const auto rs = reg_.open("Select * From Keywords");
  rs->AddNew({{"FieldName", "Category"}, {"Keyword", "Form"}});
  EXPECT_EQ(rs->EditMode(), kEditNone);
  EXPECT_THAT(reg_.rows("Select FieldName, Keyword From Keywords"), ElementsAre("Category|Form"));
  EXPECT_RAISES(kWrongType,
                rs->AddNew({{"FieldName", "Category"}, {"Keyword", std::string(300, 'x')}}));
  EXPECT_RAISES(kNoSuchItem, rs->AddNew({{"NoSuchColumn", 1}}));
  EXPECT_EQ(rs->EditMode(), kEditNone);
  rs->MoveFirst();
  EXPECT_THAT(reg_.rows("Select FieldName, Keyword From Keywords"), ElementsAre("Category|Form"));
}

TEST_F(RowRange, ARowIsChangedWithAllValuesOrNotAtAll) {
  const auto rs = documents();
  rs->Update({{"DocumentTitle", "First"}, {"EffectiveDate", Null}});
  EXPECT_EQ(reg_.value("Select DocumentTitle From Documents Where DocumentID = 'd1'"), "First");
  rs->Fields("DocumentNotes")->Value("pending before");
  EXPECT_RAISES(kWrongType, rs->Update({{"DocumentTitle", "Second"},
                                        {"DocumentNumber", std::string(300, 'x')}}));
  rs->MoveNext();
  EXPECT_THAT(
      reg_.rows("Select DocumentTitle, DocumentNotes From Documents Where DocumentID = 'd1'"),
      ElementsAre("First|pending before"));
}

}  // namespace
}  // namespace kv
