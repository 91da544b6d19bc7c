// SPDX-License-Identifier: Apache-2.0
// Sets built field by field and opened without a connection obey the same rules.

#include <gtest/gtest.h>

#include "support/error_check.h"
#include "support/test_register.h"

namespace kv {
namespace {

Ref<Recordset> built() {
  auto rs = Recordset::create();
  rs->Fields().Append("ID", kTypeInteger);
  rs->Fields().Append("Name", kTypeVarWChar, 10);
  rs->Fields().Append("Due", kTypeDate);
  rs->Fields().Append("Done", kTypeBoolean);
  rs->Open();
  return rs;
}

void add(Recordset& rs, int id, const char* name) {
  rs.AddNew();
  rs.Fields("ID")->Value(id);
  rs.Fields("Name")->Value(name);
  rs.Update();
}

TEST(FreeStandingSet, IsBuiltOpenedAndFilled) {
  const auto rs = built();
  EXPECT_EQ(rs->State(), kStateOpen);
  EXPECT_TRUE(rs->Eof());
  add(*rs, 1, "one");
  add(*rs, 2, "two");
  EXPECT_EQ(rs->RecordCount(), 2);
  EXPECT_EQ(test::rowsOf(*rs), (std::vector<std::string>{"1|one|~|~", "2|two|~|~"}))
      << "every column takes Null";
}

TEST(FreeStandingSet, HasRulesAboutItsFields) {
  const auto rs = Recordset::create();
  EXPECT_RAISES(3709, rs->Open());
  rs->Fields().Append("ID", kTypeInteger);
  EXPECT_RAISES(3265, rs->Fields().Append("id", kTypeInteger));
  EXPECT_RAISES(3001, rs->Fields().Append("X", 999));
  EXPECT_RAISES(3001, rs->Fields().Append("X", kTypeVarWChar, 0));
  EXPECT_EQ(rs->Fields().Count(), 1);
  rs->Open();
  EXPECT_RAISES(3705, rs->Open());
  EXPECT_RAISES(3219, rs->Fields().Append("Y", kTypeInteger));
  EXPECT_RAISES(3705, rs->LockType(kOptimistic));
  rs->Close();
  EXPECT_RAISES(3704, (void)rs->Fields("ID"));
}

TEST(FreeStandingSet, TakesOnlyWhatItsFieldsHold) {
  const auto rs = built();
  rs->AddNew();
  EXPECT_RAISES(3421, rs->Fields("Name")->Value("longer than ten"));
  EXPECT_RAISES(3421, rs->Fields("ID")->Value("x"));
  EXPECT_RAISES(3421, rs->Fields("Due")->Value("x"));
  rs->Fields("Due")->Value("2001-03-09");
  rs->Fields("Done")->Value(7);
  rs->Update();
  EXPECT_EQ(test::rowOf(*rs), "~|~|3/9/2001|True");
}

TEST(FreeStandingSet, EditsMovesFindsAndDeletesLikeAnyOther) {
  const auto rs = built();
  for (int i = 1; i <= 4; ++i) add(*rs, i, "x");
  rs->MoveFirst();
  rs->Fields("Name")->Value("edited");
  rs->MoveNext();
  rs->Delete();
  EXPECT_RAISES(3021, (void)rs->Fields("Name")->Value());
  EXPECT_RAISES(3021, rs->Delete());
  rs->Find("ID = 4");
  EXPECT_EQ(rs->AbsolutePosition(), 3);
  rs->Find("Name = 'EDITED'", 0, kBackward);
  EXPECT_EQ(test::rowOf(*rs), "1|edited|~|~");
  rs->Sort("ID DESC");
  EXPECT_EQ(test::rowOf(*rs), "4|x|~|~");
  rs->Filter("Name = 'x'");
  EXPECT_EQ(rs->RecordCount(), 2);
  rs->AddNew();
  EXPECT_RAISES(3219, rs->Close());
  rs->CancelUpdate();
  EXPECT_RAISES(3251, rs->Requery());
  rs->Close();
}

TEST(FreeStandingSet, ClonesRaceForARowToo) {
  const auto rs = built();
  add(*rs, 1, "one");
  const auto clone = rs->Clone();
  clone->Fields("Name")->Value("clone");
  rs->Fields("Name")->Value("mine");
  rs->Update();
  EXPECT_RAISES(-2147217864, clone->Update());
  clone->CancelUpdate();
  clone->Fields("Name")->Value("clone");
  rs->Delete();
  EXPECT_RAISES(-2147217885, clone->Update());
}

TEST(FreeStandingSet, CopiesTheFieldsOfAnotherOne) {
  const test::TestRegister reg;
  const auto source = reg.open("Select * From Actions Where ActionID = -1");
  const auto copy = Recordset::create();
  for (std::int32_t i = 0; i < source->Fields().Count(); ++i) {
    const auto field = source->Fields(i);
    copy->Fields().Append(field->Name(), field->Type(), field->DefinedSize(), field->Attributes());
  }
  copy->LockType(kBatchOptimistic);
  copy->Open();
  copy->AddNew();
  EXPECT_TRUE(copy->Fields("ActionID")->IsNull()) << "a copied counter takes Null";
  copy->Fields("Subject")->Value("Your approval is required");
  copy->Fields("ActionID")->Value(3);
  copy->Update();
  EXPECT_EQ(copy->Fields("ActionID")->Value(), Variant(3));
  EXPECT_EQ(copy->RecordCount(), 1);
}

TEST(FreeStandingSet, ALongOneIsReadByBlocks) {
  const auto rs = built();
  for (int i = 0; i < 1000; ++i) add(*rs, i, "x");
  int sum = 0;
  for (rs->MoveFirst(); !rs->Eof(); rs->MoveNext())
    sum += *rs->Fields("ID")->Value().as<std::int32_t>();
  EXPECT_EQ(sum, 499500);
}

}  // namespace
}  // namespace kv
