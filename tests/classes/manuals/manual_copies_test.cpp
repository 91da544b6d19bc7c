// SPDX-License-Identifier: Apache-2.0
// Who has a manual, and the numbers of its hard copies.
#include <gtest/gtest.h>

#include "support/distribution_session.h"

namespace kv {
namespace {

using test::Texts;

template <class Session>
class CopiesSession : public test::DistributionSession<Session> {
 protected:
  clsVeskManual& manual() { return *this->vesk_->Manual(); }
};

class ManualCopies : public CopiesSession<test::SessionTest> {
 protected:
  ManualCopies() {
    logIn("Bert");
    addDocument("A");
    addDocument("B");
    addManual("M1");
    addManual("M2");
    for (const char* document : {"A", "B"}) putInto("M1", document, "1");
  }
};

TEST_F(ManualCopies, WhoHasHardCopies) {
  for (const char* document : {"A", "B"}) {
    hold("User2", document, "M1", true, "'2'");
    hold("User1", document, "M1", true, "'3'");
    hold("User1", document, "M1", true, "'1'");
    hold("User1", document, "M1", false, "'-1'");
    hold("User1", document, "M2", true, "'9'");
    hold("gone", document, "M1", true, "'4'");
  }
  EXPECT_EQ(statementsOf([&] {
              EXPECT_EQ(test::rowsOf(*manual().Copies("M1")),
                        (Texts{"gone|4", "User1|1", "User1|3", "User2|2"}));
            }),
            Texts{"Select Distinct Personals.UserID, Personals.CopyNumber from Personals Where "
                  "Personals.ManualID = 'M1' and Personals.HardCopy <> 0"});
  Ref<Recordset> users;
  EXPECT_EQ(statementsOf([&] { users = manual().Copies("M1", true); }),
            Texts{"Select Personals.UserID From Personals Where Personals.ManualID = 'M1' and "
                  "Personals.hardcopy <> 0"});
  ASSERT_EQ(users->RecordCount(), 2) << "the users' records, each once";
  EXPECT_EQ(users->Fields("UserName")->Value(), Variant("Bert"));
  for (const bool all : {false, true}) EXPECT_EQ(manual().Copies("M9", all)->RecordCount(), 0);
}

TEST_F(ManualCopies, WhoHasItOnAPersonalList) {
  for (const char* document : {"A", "B"}) {
    hold("User2", document, "M1", false, "'-1'");
    hold("User1", document, "M1", false, "'-1'");
    hold("User3", document, "M1", true, "'1'");
    hold("User4", document, "M2", false, "'-1'");
  }
  EXPECT_EQ(statementsOf([&] {
              EXPECT_EQ(test::rowsOf(*manual().Users("M1")), (Texts{"User1", "User2"}));
            }),
            Texts{"Select Distinct Personals.UserID from Personals where Personals.manualid = "
                  "'M1' and Personals.hardcopy = 0"});
  Ref<Recordset> users;
  EXPECT_EQ(statementsOf([&] { users = manual().Users("M1", true); }),
            Texts{"Select Distinct VeskProfiles.* from Personals Left Join VeskProfiles On "
                  "Personals.userid = veskprofiles.userid where Personals.manualid = 'M1' and "
                  "Personals.hardcopy = false"});
  ASSERT_EQ(users->RecordCount(), 2);
  EXPECT_EQ(users->Fields("UserName")->Value(), Variant("Anna"));
  for (const bool all : {false, true}) EXPECT_EQ(manual().Users("M9", all)->RecordCount(), 0);
}

// ---- numbers ----

TEST_F(ManualCopies, TheFirstNumbersOfAManual) {
  grant({urReleaseManualsToUsers});
  EXPECT_EQ(statementsOf([&] { EXPECT_EQ(manual().NextCopyNumber("M1"), "0001"); }),
            Texts{"Select Distinct Personals.UserID, Personals.CopyNumber from Personals Where "
                  "Personals.ManualID = 'M1' and Personals.HardCopy <> 0"});
  manual().ReleaseCopy("M1", "User1", "0001");
  EXPECT_EQ(statementsOf([&] { EXPECT_EQ(manual().NextCopyNumber("M1"), "2"); }).back(),
            "Select CopyNumber From Personals Where ManualID = 'M1' and HardCopy <> 0 and "
            "CopyNumber = '2'");
  manual().ReleaseCopy("M1", "User1", "2");
  EXPECT_EQ(manual().NextCopyNumber("M1"), "3");
  EXPECT_EQ(manual().NextCopyNumber("M2"), "0001") << "each manual for itself";
}

struct NumberCase {
  std::vector<std::pair<const char*, const char*>> held;  // user and number
  const char* next;
};

TEST_F(ManualCopies, TheNextNumberFollowsTheLastRowsAndIsFree) {
  const NumberCase cases[] = {
      {{{"User1", "'0009'"}}, "10"},
      {{{"User1", "'A-09'"}}, "A-10"},
      {{{"User1", "'A'"}}, "A1"},
      {{{"User1", "''"}}, "1"},
      {{{"User1", "Null"}}, "1"},
      {{{"User1", "'9'"}, {"User2", "'3'"}}, "4"},
      {{{"User1", "'4'"}, {"User2", "'3'"}, {"User1", "'5'"}}, "6"},
      {{{"User1", "'a2'"}, {"User2", "'A1'"}}, "A3"},
      {{{"User1", "'99999999999999999999'"}}, "100000000000000000000"},
      {{{"User1", "'O''Brien 1'"}}, "O'Brien 2"},
  };
  for (const auto& c : cases) {
    reg_.execute("Delete * From Personals");
    for (const auto& [user, number] : c.held) hold(user, "A", "M1", true, number);
    hold("User9", "A", "M1", false, "'77'");
    EXPECT_EQ(manual().NextCopyNumber("M1"), c.next);
  }
}

TEST_F(ManualCopies, NumbersThatFollowEachOtherInUseArePassedOver) {
  // The last row has the greatest text, which is a small number.
  const auto connection = reg_.connection();
  connection->BeginTrans();
  for (int i = 1; i <= 60; ++i) hold("User1", "A", "M1", true, fmt::format("'a{}'", i));
  hold("User9", "A", "M1", true, "'A1'");
  connection->CommitTrans();
  Texts statements;
  EXPECT_EQ(
      (statements = statementsOf([&] { EXPECT_EQ(manual().NextCopyNumber("M1"), "A61"); })).back(),
      "Select CopyNumber From Personals Where ManualID = 'M1' and HardCopy <> 0 and "
      "CopyNumber = 'A61'");
  EXPECT_EQ(statements.size(), 10U) << "the copies, eight numbers in use, and the free one";
}

TEST_F(ManualCopies, WhetherANumberIsInUse) {
  hold("User1", "A", "M1", true, "'A-1'");
  hold("User1", "A", "M1", false, "'2'");
  hold("User1", "A", "M2", true, "'3'");
  EXPECT_EQ(statementsOf([&] { EXPECT_TRUE(manual().DuplicateCopyNumber("M1", "a-1")); }),
            Texts{"Select Distinct Personals.UserID, Personals.CopyNumber from Personals Where "
                  "Personals.ManualID = 'M1' and Personals.HardCopy <> 0"});
  for (const char* number : {"2", "3", "", "A-", "A%", "A-1''"})
    EXPECT_FALSE(manual().DuplicateCopyNumber("M1", number)) << number;
  EXPECT_FALSE(manual().DuplicateCopyNumber("M9", "1"));
  EXPECT_FALSE(manual().DuplicateCopyNumber("M1", std::string(10000, '1')));
}

TEST_F(ManualCopies, ANumberIsChanged) {
  for (const char* document : {"A", "B"}) {
    hold("User1", document, "M1", true, "'1'");
    hold("User2", document, "M1", true, "'2'");
    hold("User1", document, "M2", true, "'1'");
  }
  EXPECT_EQ(statementsOf([&] { manual().ChangeCopyNumber("M1", "1", "2"); }),
            Texts{"Update Personals Set CopyNumber = '2' Where ManualID = 'M1' and CopyNumber = "
                  "'1'"});
  EXPECT_EQ(reg_.rows("Select UserID, ManualID, CopyNumber From Personals Where DocumentID = 'A'"),
            (Texts{"User1|M1|2", "User2|M1|2", "User1|M2|1"}))
      << "a number in use is no hindrance";
  const auto before = everything();
  manual().ChangeCopyNumber("M1", "no such number", "3");
  manual().ChangeCopyNumber("M9", "2", "3");
  EXPECT_THROW(manual().ChangeCopyNumber("M1", "2", std::string(10000, '1')), Error);
  EXPECT_EQ(everything(), before);
}

class CopyFaults : public CopiesSession<test::FaultySessionTest> {};

TEST_F(CopyFaults, ChangingANumberLeavesNothingBehind) {
  hold("User1", "A", "M1", true, "'1'");
  EXPECT_EQ(leavesNothingBehind([&] { manual().ChangeCopyNumber("M1", "1", "2"); }), 1);
}

// ---- links ----

TEST_F(ManualCopies, CopiesAreReleasedAndCollectedByTheRoot) {
  grant({});
  const auto refusals = [&] {
    return Texts{test::descriptionOf([&] { manual().ReleaseCopy("M1", "User1", "5"); }),
                 test::descriptionOf([&] { manual().CollectCopy("M1", "User1", "5"); }),
                 test::descriptionOf([&] { manual().AddUser("M1", "User1"); }),
                 test::descriptionOf([&] { manual().RemoveUser("M1", "User1"); })};
  };
  EXPECT_EQ(refusals(),
            (Texts{"You do not have the right to release manuals to users",
                   "You do not have the right to collect manuals from users",
                   "You do not have the right to add manuals to other user's personal lists",
                   "You do not have the right to remove manuals from other user's personal "
                   "lists"}));
  grant({urReleaseManualsToUsers, urCollectManualsFromUsers, urAddManualsToOthersPersonalLists,
         urRemoveManualsFromOthersPersonalLists});
  EXPECT_TRUE(manual().ReleaseCopy("M1", "User1", "5"));
  EXPECT_TRUE(manual().AddUser("M1", "User1"));
  EXPECT_EQ(copies(), (Texts{"User1|A|M1|True|5|7", "User1|B|M1|True|5|7", "User1|A|M1|False|-1|7",
                             "User1|B|M1|False|-1|7"}));
  EXPECT_TRUE(manual().CollectCopy("M1", "User1", "5"));
  EXPECT_EQ(copies(), (Texts{"User1|A|M1|False|-1|7", "User1|B|M1|False|-1|7"}));
  EXPECT_TRUE(manual().RemoveUser("M1", "User1"));
  EXPECT_EQ(copies(), Texts{});
}

// ---- hostile values ----

TEST_F(ManualCopies, ValuesThatWouldChangeAStatementRunNothing) {
  const auto before = everything();
  for (const std::string& bad : {std::string("O'Brien"), std::string("x' or 'a'='a"),
                                 std::string("caf\xE9"), std::string("M1\0", 3)})
    EXPECT_EQ(statementsOf([&] {
                for (const bool all : {false, true}) {
                  EXPECT_RAISES(kSyntax, (void)manual().Copies(bad, all));
                  EXPECT_RAISES(kSyntax, (void)manual().Users(bad, all));
                }
                EXPECT_RAISES(kSyntax, (void)manual().NextCopyNumber(bad));
                EXPECT_RAISES(kSyntax, (void)manual().DuplicateCopyNumber(bad, "1"));
                EXPECT_RAISES(kSyntax, (void)manual().DuplicateCopyNumber("M1", bad));
                EXPECT_RAISES(kSyntax, manual().ChangeCopyNumber(bad, "1", "2"));
                EXPECT_RAISES(kSyntax, manual().ChangeCopyNumber("M1", bad, "2"));
                EXPECT_RAISES(kSyntax, manual().ChangeCopyNumber("M1", "1", bad));
              }),
              Texts{});
  EXPECT_EQ(everything(), before);
}

}  // namespace
}  // namespace kv
