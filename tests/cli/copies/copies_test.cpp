// SPDX-License-Identifier: Apache-2.0
// kvvesk release, collect and personal: giving copies to users and taking them back.

#include <nlohmann/json.hpp>

#include "cli/verb_register.h"
#include "common/error.h"

namespace kv {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class CopyVerbs : public test::VerbTest {
 protected:
  // The handbook has D1 and D2; the leaflet has nothing.
  CopyVerbs() {
    for (const char* sql :
         {"Insert Into Manuals (ManualID, ManualName) Values ('M''1', 'Handbook')",
          "Insert Into Manuals (ManualID, ManualName) Values ('M2', 'Leaflet')",
          "Insert Into ManualContents (ManualID, DocumentID, [Position]) Values ('M''1', 'D1', 1)",
          "Insert Into ManualContents (ManualID, DocumentID, [Position]) Values ('M''1', 'D2', 2)"})
      reg_.execute(sql);
  }

  [[nodiscard]] std::vector<std::string> copies() const {
    return reg_.rows(
        "Select UserID, DocumentID, ManualID, HardCopy, CopyNumber, RevisionID From Personals "
        "Order By ReleaseID");
  }
  [[nodiscard]] std::string release() const {
    return reg_.value("Select Max(ReleaseID) From Personals");
  }
  [[nodiscard]] static std::string error(int code, const std::string& rest) {
    return "error " + std::to_string(kErrorBase + code) + " (" + rest + "\n";
  }
};

TEST_F(CopyVerbs, AHardCopyOfADocumentIsReleasedAndCollectedByItsNumber) {
  const auto out = reg_.done("release", {"--document", "P-1", "--to", "Carla", "--hard"});
  const std::string number = release();
  EXPECT_EQ(out, "released the document D1 to User903, release " + number + "\n");
  EXPECT_THAT(copies(), ElementsAre("User903|D1|0|True|~|901"));
  EXPECT_EQ(reg_.done("collect", {"--release", number}),
            "collected the document D1 from User903, release " + number + "\n");
  EXPECT_THAT(copies(), IsEmpty());
  EXPECT_EQ(refused("Anna", "collect", {"--release", number}),
            "error 5 (kvvesk): There is no release " + number + ".\n");
}

TEST_F(CopyVerbs, WithoutHardItComesOnThePersonalList) {
  const auto out =
      json::parse(reg_.done("release", {"--document", "D1", "--to", "User903", "--json"}));
  EXPECT_EQ(out["columns"], json::parse(R"(["ReleaseID", "DocumentID", "UserID"])"));
  EXPECT_EQ(out["rows"][0], json::array({std::stoi(release()), "D1", "User903"}));
  EXPECT_THAT(copies(), ElementsAre("User903|D1|0|False|~|901"));
  EXPECT_EQ(
      refused("Anna", "release", {"--document", "D1", "--to", "Carla"}),
      error(2519, "DocumentUserRelation): This document is already in this users personal list"));
  EXPECT_EQ(refused("Anna", "collect", {"--release", release()}),
            "error 5 (kvvesk): The release " + release() +
                " is on a personal list; see 'kvvesk personal remove'.\n");
}

TEST_F(CopyVerbs, HardCopiesOfManualsAreNumbered) {
  EXPECT_EQ(reg_.done("release", {"--manual", "Handbook", "--to", "Carla", "--hard"}),
            "released copy 0001 of the manual M'1 to User903, with 2 documents\n");
  EXPECT_EQ(reg_.done("release", {"--manual", "Handbook", "--to", "Bert", "--hard", "--csv"}),
            "\"ManualID\",\"UserID\",\"CopyNumber\",\"Documents\"\r\n"
            "\"M'1\",\"User902\",\"2\",2\r\n");
  EXPECT_EQ(reg_.done("release", {"--manual", "M'1", "--to", "Carla", "--hard", "--copy", "Dan's"}),
            "released copy Dan's of the manual M'1 to User903, with 2 documents\n");
  EXPECT_EQ(
      refused("Anna", "release", {"--manual", "M'1", "--to", "Carla", "--hard", "--copy", "2"}),
      "error 5 (kvvesk): There is a copy 2 of the manual M'1 already.\n");
  EXPECT_THAT(copies(),
              ElementsAre("User903|D1|M'1|True|0001|901", "User903|D2|M'1|True|0001|903",
                          "User902|D1|M'1|True|2|901", "User902|D2|M'1|True|2|903",
                          "User903|D1|M'1|True|Dan's|901", "User903|D2|M'1|True|Dan's|903"));
  EXPECT_EQ(reg_.done("collect", {"--manual", "M'1", "--from", "Carla", "--copy", "Dan's"}),
            "collected copy Dan's of the manual M'1 from User903, with 2 documents\n");
  EXPECT_EQ(refused("Anna", "collect", {"--release", release()}),
            "error 5 (kvvesk): The release " + release() +
                " belongs to copy 2 of the manual M'1; collect that.\n");
  (void)reg_.done("release", {"--manual", "M'1", "--to", "Carla", "--hard"});
  EXPECT_EQ(reg_.done("collect", {"--manual", "M'1", "--from", "Carla"}),
            "collected every hard copy of the manual M'1 from User903, with 4 documents\n");
  EXPECT_THAT(copies(), ElementsAre("User902|D1|M'1|True|2|901", "User902|D2|M'1|True|2|903"));
  EXPECT_EQ(refused("Anna", "collect", {"--manual", "M'1", "--from", "Carla"}),
            error(2521, "ManualUserRelation): This user does not have this manual"));
}

TEST_F(CopyVerbs, WhatCannotBeReleasedIsSaidByTheRegister) {
  EXPECT_EQ(refused("Anna", "release", {"--manual", "Leaflet", "--to", "Carla", "--hard"}),
            error(2520,
                  "ManualUserRelation): This manual has no contents.  Only manuals that have "
                  "contents may be released to users."));
  EXPECT_EQ(refused("Anna", "release", {"--document", "D3", "--to", "Carla", "--hard"}),
            error(2515,
                  "DocumentUserRelation): This is an uncontrolled document.  Only controlled "
                  "documents may be released to users"));
  EXPECT_EQ(refused("Anna", "release", {"--document", "D1", "--to", "Dora"}),
            "error 5 (kvvesk): There is no user 'Dora'.\n");
}

TEST_F(CopyVerbs, OptionsThatDoNotGoTogetherAreRefused) {
  const std::vector<std::vector<std::string>> releases = {
      {"--to", "Carla"},
      {"--to", "Carla", "--document", "D1", "--manual", "M2"},
      {"--to", "Carla", "--document", "D1", "--hard", "--copy", "1"},
      {"--to", "Carla", "--manual", "M'1", "--copy", "1"},
      {"--to", "Carla", "--manual", "M'1", "--hard", "--copy", ""}};
  for (const auto& words : releases)
    EXPECT_THAT(refused("Anna", "release", words, 2), HasSubstr("kvvesk: "));
  const std::vector<std::vector<std::string>> collections = {{},
                                                             {"--manual", "M'1"},
                                                             {"--release", "1", "--manual", "M'1"},
                                                             {"--release", "1", "--copy", "0001"},
                                                             {"--release", "1", "--from", "Carla"}};
  for (const auto& words : collections)
    EXPECT_THAT(refused("Anna", "collect", words, 2), HasSubstr("kvvesk: "));
  for (const char* verb : {"personal add", "personal remove"})
    EXPECT_EQ(refused("Anna", verb, {}, 2), "kvvesk: give either --document or --manual\n");
}

TEST_F(CopyVerbs, OnesOwnListTakesOnlyTheRightToIt) {
  reg_.setRights("User902", {130, 131});
  const auto added = reg_.as("Bert", "personal add", {"--document", "D1"});
  EXPECT_EQ(added.out,
            "put the document D1 on the personal list of User902, release " + release() + "\n");
  EXPECT_EQ(reg_.as("Bert", "personal remove", {"--document", "D1"}).err, "");
  EXPECT_THAT(copies(), IsEmpty());
  EXPECT_EQ(refused("Bert", "personal add", {"--document", "D1", "--of", "Carla"}),
            error(2531,
                  "DocumentUserRelation): You do not have the right to add documents to other "
                  "user's personal lists"));
  EXPECT_EQ(
      refused("Bert", "personal remove", {"--document", "D1"}),
      error(2518, "DocumentUserRelation): Unable to return released document without ReleaseID"));
}

TEST_F(CopyVerbs, ManualsGoOnPersonalListsAndOffThem) {
  EXPECT_EQ(reg_.done("personal add", {"--manual", "M'1", "--of", "Carla"}),
            "put the manual M'1 on the personal list of User903, with 2 documents\n");
  EXPECT_THAT(copies(), ElementsAre("User903|D1|M'1|False|-1|901", "User903|D2|M'1|False|-1|903"));
  // As other clients number them.
  reg_.execute("Update Personals Set CopyNumber = '0001'");
  (void)reg_.done("release", {"--manual", "M'1", "--to", "Carla", "--hard"});
  EXPECT_EQ(reg_.done("personal remove", {"--manual", "Handbook", "--of", "Carla"}),
            "took the manual M'1 off the personal list of User903, with 2 documents\n");
  EXPECT_EQ(copies().size(), 2U) << "the hard copy stays";
}

TEST_F(CopyVerbs, ASecuredDocumentIsNotThereForOthers) {
  (void)reg_.done("release", {"--document", "D2", "--to", "Carla", "--hard"});
  reg_.setRights("User902", {102, 103, 108});
  EXPECT_EQ(refused("Bert", "release", {"--document", "D2", "--to", "Carla"}),
            "error 5 (kvvesk): There is no document 'D2'.\n");
  EXPECT_EQ(refused("Bert", "collect", {"--release", release()}),
            "error 5 (kvvesk): There is no release " + release() + ".\n");
}

}  // namespace
}  // namespace kv
