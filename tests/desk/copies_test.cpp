// SPDX-License-Identifier: Apache-2.0
// Copies as they are given to users, taken back and counted.
#include "classes/rights/rights.h"
#include "desk/copies/give_copies.h"
#include "desk/copies/take_copies_back.h"
#include "desk/copies/view_copies.h"
#include "desk/desk_register.h"

namespace kv {
namespace {

using test::rowsOf;
using Rows = std::vector<std::string>;

class DeskCopies : public test::DeskTest {
 protected:
  [[nodiscard]] Rows copies() const {
    return reg_.rows(
        "Select UserID, DocumentID, ManualID, HardCopy From Personals Order By ReleaseID");
  }
};

TEST_F(DeskCopies, ADocumentIsReleasedAndCollected) {
  const auto session = as("Bert", {urReleaseDocumentsToUsers, urCollectDocumentsFromUsrs});
  const auto given = desk::giveDocument(session, "P-1", "Carla", true);
  EXPECT_EQ(given.documentId, "D1");
  EXPECT_EQ(given.userId, "User903");
  EXPECT_EQ(copies(), Rows{"User903|D1|0|True"});
  const auto taken = desk::collectDocument(session, given.release);
  EXPECT_EQ(taken.release, given.release);
  EXPECT_EQ(taken.userId, "User903");
  EXPECT_EQ(copies(), Rows{});
  expectRefused(5, "There is no release " + std::to_string(given.release) + ".",
                [&] { desk::collectDocument(session, given.release); });
}

TEST_F(DeskCopies, ADocumentGoesOnAPersonalListAndOffIt) {
  const auto session = as("Bert", {urADDTOPERSONAL, urRemoveFromPersonal});
  const auto listed = desk::giveDocument(session, "D1", {}, false);
  EXPECT_EQ(listed.userId, "User902");
  EXPECT_EQ(copies(), Rows{"User902|D1|0|False"});
  expectRefused(5,
                "The release " + std::to_string(listed.release) +
                    " is on a personal list; see 'kvvesk personal remove'.",
                [&] { desk::collectDocument(session, listed.release); });
  EXPECT_EQ(desk::takeDocumentOffList(session, "D1", {}).release, listed.release);
  EXPECT_EQ(copies(), Rows{});
}

TEST_F(DeskCopies, AManualIsReleasedUnderItsNumber) {
  const auto session = as("Anna");
  const auto first = desk::giveHardManual(session, "Handbook", "Bert", "7");
  EXPECT_EQ(first.number, "7");
  EXPECT_EQ(first.documents, 1);
  EXPECT_EQ(desk::giveHardManual(session, "M1", "Carla").number, "8");
  expectRefused(5, "There is a copy 7 of the manual M1 already.",
                [&] { desk::giveHardManual(session, "M1", "Anna", "7"); });
  expectWrongInput("a hard copy needs a number",
                   [&] { desk::giveHardManual(session, "M1", "Anna", " "); });
  EXPECT_EQ(desk::collectManual(session, "M1", "Bert", "7").documents, 1);
  EXPECT_EQ(copies(), Rows{"User903|D1|M1|True"});
}

TEST_F(DeskCopies, AManualGoesOnAPersonalListAndOffIt) {
  const auto session = as("Bert", {urADDTOPERSONAL, urRemoveFromPersonal});
  EXPECT_EQ(desk::listManual(session, "M1", {}).documents, 1);
  EXPECT_EQ(copies(), Rows{"User902|D1|M1|False"});
  EXPECT_EQ(desk::takeManualOffList(session, "M1", {}).documents, 1);
  EXPECT_EQ(copies(), Rows{});
}

TEST_F(DeskCopies, GivingAndTakingTakeTheirRights) {
  const auto anna = as("Anna");
  const auto hard = desk::giveDocument(anna, "D1", "Carla", true);
  desk::giveHardManual(anna, "M1", "Carla", "1");
  const auto bert = as("Bert");
  const auto refused = [&](const std::string& text, const std::function<void()>& useCase) {
    expectRefused(kErrorBase + 2531, text, useCase);
  };
  refused("You do not have the right to release documents to users",
          [&] { desk::giveDocument(bert, "D1", "Carla", true); });
  refused("You do not have the right to add documents to your personal list",
          [&] { desk::giveDocument(bert, "D1", {}, false); });
  refused("You do not have the right to collect documents from users",
          [&] { desk::collectDocument(bert, hard.release); });
  refused("You do not have the right to remove documents from your personal list",
          [&] { desk::takeDocumentOffList(bert, "D1", {}); });
  refused("You do not have the right to release manuals to users",
          [&] { desk::giveHardManual(bert, "M1", "Carla"); });
  refused("You do not have the right to add manuals to other user's personal lists",
          [&] { desk::listManual(bert, "M1", "Carla"); });
  refused("You do not have the right to collect manuals from users",
          [&] { desk::collectManual(bert, "M1", "Carla"); });
  refused("You do not have the right to remove manuals from other user's personal lists",
          [&] { desk::takeManualOffList(bert, "M1", "Carla"); });
}

TEST_F(DeskCopies, StaleOnesAreTold) {
  reg_.execute(
      "Insert Into Personals (ReleaseID, UserID, DocumentID, ManualID, RevisionID, HardCopy) "
      "Values (701, 'User902', 'D1', '0', 902, True)");
  reg_.execute(
      "Insert Into Personals (ReleaseID, UserID, DocumentID, ManualID, RevisionID, HardCopy) "
      "Values (702, 'User903', 'D1', '0', 901, False)");
  const auto session = as("Bert", {urViewDocumentList, urViewManualList, urVIEWUSERLIST});
  const auto numbers = [&](const desk::CopyListing& listing) {
    Rows out;
    const auto rs = desk::listCopies(session, listing);
    for (; !rs->Eof(); rs->MoveNext())
      out.push_back(test::shown(rs->Fields("ReleaseID")->Value()) + " " +
                    test::shown(rs->Fields("State")->Value()));
    return out;
  };
  EXPECT_EQ(numbers({}), (Rows{"701 stale", "702 current"}));
  EXPECT_EQ(numbers({.staleOnly = true}), Rows{"701 stale"});
  EXPECT_EQ(numbers({.user = "Carla"}), Rows{"702 current"});
  EXPECT_EQ(numbers({.kinds = {.hard = false}}), Rows{"702 current"});
  expectRefused(5, "There is no manual 'M9'.",
                [&] { (void)desk::listCopies(session, {.manual = "M9"}); });
  expectDenied(std::string(userRightText(urViewDocumentList)),
               [&] { (void)desk::listCopies(as("Carla"), {}); });
}

TEST_F(DeskCopies, EverybodySeesHisOwn) {
  desk::giveDocument(as("Anna"), "D1", "Carla", true);
  const auto carla = as("Carla");
  EXPECT_EQ(desk::listHoldings(carla, {})->RecordCount(), 1);
  EXPECT_EQ(desk::listHoldings(carla, {}, {.hard = false})->RecordCount(), 0);
  expectDenied(std::string(userRightText(urviewuserdetail)),
               [&] { (void)desk::listHoldings(as("Bert"), "Carla"); });
  EXPECT_EQ(desk::listHoldings(as("Bert", {urviewuserdetail}), "Carla")->RecordCount(), 1);
}

}  // namespace
}  // namespace kv
