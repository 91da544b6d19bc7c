// SPDX-License-Identifier: Apache-2.0
// kvvesk owners and approvers: the two lists of users that a document has.

#include "classes/rights/rights.h"
#include "cli/verb_register.h"

namespace kv {
namespace {

using testing::HasSubstr;

constexpr const char* kHeading = "\"Place\",\"UserID\",\"UserName\"\r\n";

class OwnersVerb : public test::VerbTest {
 protected:
  [[nodiscard]] std::string list(const std::string& verb, const std::string& document) const {
    return reg_.done(verb + " show", {document, "--csv"});
  }
  [[nodiscard]] std::vector<std::string> places() const {
    return reg_.rows("Select UserID, ListOrder From Routing Order By ListOrder");
  }
};

TEST_F(OwnersVerb, OwnersComeAndGo) {
  EXPECT_EQ(list("owners", "P-1"), kHeading);
  EXPECT_EQ(reg_.done("owners add", {"P-1", "Bert"}), "User902 now owns the document D1\n");
  EXPECT_EQ(reg_.done("owners add", {"D1", "User903", "--csv"}),
            "\"DocumentID\",\"UserID\"\r\n\"D1\",\"User903\"\r\n");
  EXPECT_EQ(list("owners", "D1"),
            std::string(kHeading) + "1,\"User902\",\"Bert\"\r\n2,\"User903\",\"Carla\"\r\n");
  EXPECT_EQ(refused("Anna", "owners add", {"D1", "Bert"}),
            "error -2147218996 (OwnsReleation): This user is already an owner of this document\n");
  EXPECT_EQ(reg_.done("owners remove", {"D1", "Bert"}), "User902 no longer owns the document D1\n");
  EXPECT_EQ(refused("Anna", "owners remove", {"D1", "Bert"}),
            "error -2147218995 (OwnsRelation): This user is not an owner of this document\n");
  EXPECT_EQ(reg_.rows("Select DocumentID, UserID From Owners"),
            std::vector<std::string>{"D1|User903"});
}

TEST_F(OwnersVerb, WhoIsNoUserAnyMoreCanBeRemoved) {
  reg_.own("D1", "User77");
  EXPECT_EQ(list("owners", "D1"), std::string(kHeading) + "1,\"User77\",\"\"\r\n");
  EXPECT_EQ(refused("Anna", "owners add", {"D1", "User78"}),
            "error 5 (kvvesk): There is no user 'User78'.\n");
  (void)reg_.done("owners remove", {"D1", "user77"});
  EXPECT_EQ(list("owners", "D1"), kHeading);
}

TEST_F(OwnersVerb, SecuredDocumentsAreNotThereForOthers) {
  reg_.setRights("User902", {urviewdocumentdetail, urAssigndocumentowners});
  EXPECT_EQ(refused("Bert", "owners show", {"D2"}),
            "error 5 (kvvesk): There is no document 'D2'.\n");
  EXPECT_EQ(refused("Bert", "owners add", {"D2", "Bert"}),
            "error 5 (kvvesk): There is no document 'D2'.\n");
  EXPECT_EQ(refused("Bert", "approvers show", {"P-2"}),
            "error 5 (kvvesk): There is no document 'P-2'.\n");
}

TEST_F(OwnersVerb, ANewApproverIsAskedLast) {
  EXPECT_EQ(reg_.done("approvers add", {"D1", "Carla"}), "User903 now approves the document D1\n");
  (void)reg_.done("approvers add", {"D1", "Anna"});
  EXPECT_EQ(places(), (std::vector<std::string>{"User903|1", "User901|2"}));
  EXPECT_EQ(reg_.done("approvers add", {"D1", "Bert", "--before", "Anna"}),
            "User902 now approves the document D1, before User901\n");
  EXPECT_EQ(places(), (std::vector<std::string>{"User903|1", "User902|1.5", "User901|2"}));
  EXPECT_EQ(list("approvers", "D1"), std::string(kHeading) +
                                         "1,\"User903\",\"Carla\"\r\n2,\"User902\",\"Bert\"\r\n3,"
                                         "\"User901\",\"Anna\"\r\n");
}

TEST_F(OwnersVerb, ApproversMoveAndGo) {
  for (const char* user : {"Carla", "Anna", "Bert"}) (void)reg_.done("approvers add", {"D1", user});
  EXPECT_EQ(reg_.done("approvers move", {"D1", "Bert", "--before", "Carla"}),
            "User902 now approves the document D1, before User903\n");
  EXPECT_EQ(places(), (std::vector<std::string>{"User902|0.5", "User903|1", "User901|2"}));
  EXPECT_EQ(reg_.done("approvers remove", {"D1", "Carla"}),
            "User903 no longer approves the document D1\n");
  EXPECT_EQ(places(), (std::vector<std::string>{"User902|0.5", "User901|2"}));
  EXPECT_EQ(refused("Anna", "approvers remove", {"D1", "Carla"}),
            "error -2147218992 (ApprovesRelation): This user is not in the approval list for this "
            "document\n");
}

TEST_F(OwnersVerb, ARefusedPlaceAddsNobody) {
  (void)reg_.done("approvers add", {"D1", "Carla"});
  EXPECT_EQ(refused("Anna", "approvers add", {"D1", "Bert", "--before", "Anna"}),
            "error 5 (kvvesk): The user 'Anna' is not in the approval list of the document.\n");
  EXPECT_EQ(refused("Anna", "approvers move", {"D1", "Bert", "--before", "Carla"}),
            "error 5 (kvvesk): The user 'Bert' is not in the approval list of the document.\n");
  EXPECT_EQ(refused("Anna", "approvers move", {"D1", "Carla", "--before", "Carla"}),
            "error 5 (kvvesk): Nobody can be moved before himself.\n");
  EXPECT_THAT(refused("Anna", "approvers move", {"D1", "Carla"}, 2), HasSubstr("--before"));
  EXPECT_THAT(refused("Anna", "approvers add", {"D3", "Bert"}),
              HasSubstr("(ApprovesRelation): This document is uncontrolled.  Only controlled "
                        "documents have approval lists.)\n"));
}

}  // namespace
}  // namespace kv
