// SPDX-License-Identifier: Apache-2.0
// kvvesk keywords, labels and workgroups: what a register calls things, and the groups of its
// users.

#include <nlohmann/json.hpp>

#include "cli/verb_register.h"

namespace kv {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class Vocabulary : public test::VerbTest {
 protected:
  [[nodiscard]] std::vector<std::string> keywords() const {
    return reg_.rows("Select FieldName, Keyword From Keywords Order By FieldName, Keyword");
  }
  [[nodiscard]] std::string label(const std::string& of, const std::string& field) const {
    const auto labels = json::parse(reg_.done("labels show", {"--json"}));
    for (const auto& row : labels["rows"])
      if (row[0] == of && row[1] == field) return row[2].is_null() ? "none" : row[2];
    return "no such field";
  }
};

TEST_F(Vocabulary, KeywordsAreAddedListedAndDeleted) {
  EXPECT_EQ(reg_.done("keywords add", {"docuser2", "it's"}),
            "added the keyword it's to the field DocUser2\n");
  EXPECT_EQ(reg_.done("keywords add", {"RevUser2", "issued", "--csv"}),
            "\"FieldName\",\"Keyword\"\r\n\"RevUser2\",\"issued\"\r\n");
  (void)reg_.done("keywords add", {"DocUser2", "form"});
  (void)reg_.done("keywords add", {"User03", "guest"});
  EXPECT_EQ(reg_.done("keywords show"),
            "FieldName  Keyword\n"
            "---------  -------\n"
            "DocUser2   form\n"
            "DocUser2   it's\n"
            "RevUser2   issued\n"
            "User03     guest\n"
            "(4 rows)\n");
  EXPECT_EQ(json::parse(reg_.done("keywords show", {"DOCUSER2", "--json"}))["rows"],
            json::parse(R"([["DocUser2", "form"], ["DocUser2", "it's"]])"));
  EXPECT_EQ(reg_.done("keywords delete", {"DocUser2", "IT'S"}),
            "deleted the keyword IT'S of the field DocUser2\n");
  EXPECT_THAT(keywords(), ElementsAre("DocUser2|form", "RevUser2|issued", "User03|guest"));
}

TEST_F(Vocabulary, AKeywordIsThereOnceAndOfAField) {
  (void)reg_.done("keywords add", {"DocUser2", "form"});
  EXPECT_EQ(refused("Anna", "keywords add", {"DocUser2", "Form"}),
            "error 5 (kvvesk): The field DocUser2 has the keyword 'Form' already.\n");
  EXPECT_EQ(refused("Anna", "keywords add", {"DocUser9", "form"}),
            "error 5 (kvvesk): There is no field 'DocUser9' of documents, revisions, manuals or "
            "users.\n");
  EXPECT_EQ(refused("Anna", "keywords delete", {"DocUser2", "forms"}),
            "error 5 (kvvesk): The field DocUser2 has no keyword 'forms'.\n");
  EXPECT_EQ(refused("Anna", "keywords add", {"DocUser2", " "}, 2),
            "kvvesk: an empty text is no keyword\n");
  EXPECT_THAT(refused("Anna", "keywords add", {"DocUser2", std::string(256, 'x')}),
              StartsWith("error -2147467259"));
  EXPECT_NE(refused("Anna", "keywords", {}, 2), "");
  EXPECT_NE(refused("Anna", "keywords add", {"DocUser2"}, 2), "");
  (void)reg_.done("keywords add", {"ManUser1", "form"});
  EXPECT_THAT(keywords(), ElementsAre("DocUser2|form", "ManUser1|form"));
}

TEST_F(Vocabulary, KeywordsOfFieldsThatAreGoneCanBeDeleted) {
  reg_.execute("Insert Into Keywords (FieldName, Keyword) Values ('Colour', 'red')");
  EXPECT_EQ(reg_.done("keywords delete", {"colour", "red"}),
            "deleted the keyword red of the field colour\n");
  EXPECT_THAT(keywords(), IsEmpty());
}

TEST_F(Vocabulary, EverybodySeesKeywordsAndLabels) {
  EXPECT_EQ(reg_.as("Bert", "keywords show").code, 0);
  EXPECT_EQ(reg_.as("Bert", "labels show").code, 0);
}

TEST_F(Vocabulary, LabelsAreListedAndSet) {
  EXPECT_EQ(label("users", "User04"), "none");
  EXPECT_EQ(reg_.done("labels set", {"users", "user04", "Dan's"}),
            "the field User04 of users is now called Dan's\n");
  EXPECT_EQ(label("users", "User04"), "Dan's");
  EXPECT_EQ(reg_.done("labels set", {"Documents", "location", "Shelf", "--csv"}),
            "\"Of\",\"Field\",\"Label\"\r\n\"documents\",\"Location\",\"Shelf\"\r\n");
  EXPECT_EQ(label("documents", "Location"), "Shelf");
  EXPECT_EQ(label("revisions", "Location"), "none");
  (void)reg_.done("labels set", {"revisions", "Location", "Drawer"});
  (void)reg_.done("labels set", {"manuals", "ManUser1", "Department"});
  EXPECT_EQ(label("revisions", "Location"), "Drawer");
  EXPECT_EQ(label("manuals", "ManUser1"), "Department");
  EXPECT_THAT(reg_.done("document show", {"D1"}), HasSubstr("Location (Shelf)"));
  EXPECT_THAT(reg_.done("user show", {"Bert"}), HasSubstr("User04 (Dan's)"));
  EXPECT_EQ(reg_.done("labels set", {"documents", "Location", ""}),
            "took the label off the field Location of documents\n");
  EXPECT_EQ(reg_.done("labels set", {"users", "User04", ""}),
            "took the label off the field User04 of users\n");
  EXPECT_EQ(label("users", "User04"), label("documents", "Location"));
}

TEST_F(Vocabulary, TheTypesOfUsersFieldsAreToldAndNoLabels) {
  reg_.execute("Update UserConfig Set TypeUser01 = 1, TypeUser02 = 2, TypeUser03 = 7");
  const auto rows = json::parse(reg_.done("labels show", {"--json"}))["rows"];
  std::map<std::string, json> types;
  for (const auto& row : rows)
    if (row[0] == "users") types[row[1]] = row[3];
  EXPECT_EQ(types.size(), 12U);
  EXPECT_EQ(types["User00"], "text");
  EXPECT_EQ(types["User01"], "number");
  EXPECT_EQ(types["User02"], "date");
  EXPECT_EQ(types["User03"], "text");
  EXPECT_TRUE(rows[0][3].is_null());
  EXPECT_EQ(refused("Anna", "labels set", {"users", "TypeUser01", "Kind"}),
            "error 5 (kvvesk): There is no field 'TypeUser01' of users that has a label.\n");
}

TEST_F(Vocabulary, OnlyFieldsHaveLabelsAndOnlyAdministratorsSetThem) {
  EXPECT_EQ(refused("Anna", "labels set", {"documents", "SecurityLevel", "Secret"}),
            "error 5 (kvvesk): There is no field 'SecurityLevel' of documents that has a label.\n");
  EXPECT_EQ(refused("Anna", "labels set", {"users", "User04 = '', User05", "x"}),
            "error 5 (kvvesk): There is no field 'User04 = '', User05' of users that has a "
            "label.\n");
  EXPECT_EQ(refused("Anna", "labels set", {"actions", "Subject", "x"}, 2),
            "kvvesk: there are fields of documents, revisions, manuals and users, not of "
            "'actions'\n");
  EXPECT_THAT(refused("Anna", "labels set", {"users", "User04", std::string(51, 'x')}),
              StartsWith("error -2147467259"));
  EXPECT_THAT(refused("Anna", "labels set", {"manuals", "ManUser1", std::string(51, 'x')}),
              StartsWith("error 3421"));
  EXPECT_NE(refused("Anna", "labels set", {"users", "User04"}, 2), "");
}

TEST_F(Vocabulary, WorkgroupsAreListedWithTheTwoThatEveryRegisterHas) {
  reg_.execute("Insert Into Groups (GroupID, GroupTitle) Values (7, 'Works')");
  reg_.execute("Insert Into Groups (GroupID, GroupTitle) Values (5, 'Dan''s')");
  EXPECT_EQ(reg_.done("workgroups"),
            "GroupID  GroupTitle\n"
            "-------  ---------------\n"
            "     -1  Super Users\n"
            "      0  View Only Users\n"
            "      5  Dan's\n"
            "      7  Works\n"
            "(4 rows)\n");
  EXPECT_EQ(json::parse(reg_.done("workgroups", {"--json"}))["rows"].size(), 4U);
}

TEST_F(Vocabulary, MembersAreThoseWhoseProfileSaysSo) {
  reg_.execute("Insert Into Groups (GroupID, GroupTitle) Values (5, 'Dan''s')");
  (void)reg_.done("user edit", {"Carla", "--workgroup", "5"});
  (void)reg_.done("user edit", {"Bert", "--workgroup", "Dan's"});
  EXPECT_EQ(reg_.done("workgroups", {"--members", "dan's"}),
            "UserID   UserName\n"
            "-------  --------\n"
            "User902  Bert\n"
            "User903  Carla\n"
            "(2 rows)\n");
  reg_.execute("Update VeskProfiles Set GroupID = Null Where UserID = 'User902'");
  const auto inGroup = [&](const std::string& group) {
    return json::parse(reg_.done("workgroups", {"--members", group, "--json"}))["rows"];
  };
  EXPECT_EQ(inGroup("5"), json::parse(R"([["User903", "Carla"]])"));
  EXPECT_EQ(inGroup("View Only Users"),
            json::parse(R"([["User901", "Anna"], ["User902", "Bert"]])"));
  EXPECT_EQ(inGroup("-1"), json::array());
  EXPECT_EQ(refused("Anna", "workgroups", {"--members", "6"}),
            "error 5 (kvvesk): There is no workgroup '6'.\n");
}

}  // namespace
}  // namespace kv
