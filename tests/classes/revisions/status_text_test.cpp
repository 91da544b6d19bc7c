// SPDX-License-Identifier: Apache-2.0
// The status of a revision as lists show it.
#include <gtest/gtest.h>

#include "classes/revisions/approval_session.h"

namespace kv {
namespace {

using test::Texts;

class StatusText : public test::ApprovalSession<test::SessionTest> {
 protected:
  StatusText() { logIn("Bert"); }
  std::string textOf(std::int32_t id) {
    return revision().RevStatusDescription(revision().GetRevRS(id));
  }
};

TEST_F(StatusText, EveryStatusHasItsText) {
  const struct {
    int status;
    const char* text;
  } cases[] = {{0, "Out of date Issue"},
               {1, "Current Issue"},
               {2, "Being Revised by Dora"},
               {3, "Awaiting Approval"},
               {4, "Approved"},
               {5, "Rejected"},
               {6, ""},
               {-1, ""},
               {32767, ""},
               {-32768, ""}};
  for (const auto& c : cases)
    EXPECT_EQ(textOf(addRevision(c.status, "ResponsibleID = 'User4'")), c.text) << c.status;
  EXPECT_EQ(textOf(addRevision(0, "RevisionStatus = Null")), "");
}

TEST_F(StatusText, TheWordForRevisionsIsTakenAsItIs) {
  const auto old = addRevision(0);
  const auto current = addRevision(1);
  for (const char* word : {" two words ", "R\xC3\xA9vision", "issue"}) {
    reg_.execute(std::string("Update VeskConfig Set [Revision] = '") + word + "'");
    EXPECT_EQ(textOf(old), std::string("Out of date ") + word);
    EXPECT_EQ(textOf(current), std::string("Current ") + word);
  }
  reg_.execute("Update VeskConfig Set [Revision] = Null");
  EXPECT_EQ(textOf(current), "Current ");
}

TEST_F(StatusText, NamesComeFromTheUsers) {
  reg_.execute("Update VeskProfiles Set UserName = 'Profile' Where UserID = 'User4'");
  reg_.execute("Update Users Set UserName = 'Dora O''Brien' Where UserID = 'User4'");
  EXPECT_EQ(textOf(addRevision(2, "ResponsibleID = 'User4'")), "Being Revised by Dora O'Brien");
  EXPECT_EQ(textOf(addRevision(2, "ResponsibleID = 'TBD'")), "Being Revised by ");
  EXPECT_EQ(textOf(addRevision(2, "ResponsibleID = Null")), "Being Revised by ");
  EXPECT_EQ(textOf(addRevision(2, "ResponsibleID = 'O''Brien'")), "Being Revised by ");
}

TEST_F(StatusText, TheApproverWhoseTurnItIsIsNamed) {
  for (const auto& [turn, name] : {std::pair{1, "Bert"}, {2, "Cleo"}, {3, "Dora"}}) {
    const std::int32_t id = awaiting("000", turn);
    const auto rs = revision().GetRevRS(id);
    std::string text;
    EXPECT_EQ(statementsOf([&] { text = revision().RevStatusDescription(rs); }),
              Texts{"Select * from ApprovalRouting Where RevID = " + std::to_string(id) +
                    " Order By ListOrder"});
    EXPECT_EQ(text, std::string("Awaiting Approval from ") + name);
  }
  EXPECT_EQ(textOf(awaiting("110", 1)), "Awaiting Approval from Bert") << "whatever was decided";
}

TEST_F(StatusText, ATurnThatIsNobodysRaises) {
  for (const int turn : {0, -1, 4, 5})
    EXPECT_RAISES(kNoCurrentRow, (void)textOf(awaiting("000", turn))) << turn;
  const std::int32_t id = awaiting("0");
  reg_.execute("Update Revisions Set RoutingStatus = Null");
  EXPECT_RAISES(kInvalidNull, (void)textOf(id));
  reg_.execute("Delete * From ApprovalRouting");
  EXPECT_EQ(textOf(id), "Awaiting Approval") << "which nobody asks without a list";
}

TEST_F(StatusText, TheSetIsOnlyRead) {
  addRevision(0);
  addRevision(1);
  const auto before = everything();
  const auto rs = reg_.open("Select * From Revisions Order By RevisionID");
  rs->MoveLast();
  EXPECT_EQ(revision().RevStatusDescription(rs), "Current Issue") << "the current row counts";
  EXPECT_EQ(rs->AbsolutePosition(), 2);
  EXPECT_EQ(rs->State(), 1);
  EXPECT_EQ(everything(), before);
}

TEST_F(StatusText, AMissingRowOrColumnRaises) {
  EXPECT_RAISES(kNoCurrentRow, (void)textOf(99));
  EXPECT_RAISES(kNoSuchItem,
                (void)revision().RevStatusDescription(reg_.open("Select * From Documents")));
  addRevision(2);
  EXPECT_RAISES(kNoSuchItem, (void)revision().RevStatusDescription(
                                 reg_.open("Select RevisionStatus From Revisions")));
  EXPECT_RAISES(kObjectNotSet, (void)revision().RevStatusDescription(nullptr));
}

}  // namespace
}  // namespace kv
