// SPDX-License-Identifier: Apache-2.0
// The two texts of manual and user queries, letter for letter.
#include <gtest/gtest.h>

#include "classes/queries/manual_query.h"
#include "classes/queries/samples.h"
#include "classes/queries/user_query.h"
#include "support/scale.h"
#include "support/session_test.h"

namespace kv {
namespace {

using test::at;

// ---- manual queries ----

void clear(clsManualQuery& query) {
  for (int n = 1; n <= 5; ++n) {
    query.SetQueryValue("Field" + std::to_string(n), Null);
    query.SetQueryValue("Field" + std::to_string(n) + "Key", Null);
  }
}

TEST(ManualQueryTexts, WithoutCriteriaBothAreEmpty) {
  clsManualQuery query;
  clear(query);
  EXPECT_EQ(query.JetSQL(), "");
  EXPECT_EQ(query.CrystalSQL(), "");
  for (int n = 1; n <= 5; ++n) {
    query.SetQueryValue("Field" + std::to_string(n), "");
    query.SetQueryValue("Field" + std::to_string(n) + "Key", 0);
  }
  EXPECT_EQ(query.JetSQL(), "");
  EXPECT_EQ(query.CrystalSQL(), "");
}

TEST(ManualQueryTexts, EveryOperatorOfEveryField) {
  const char* columns[] = {"ManualName", "ManUser1", "ManUser2", "ManUser3", "ManUser4"};
  for (int n = 1; n <= 5; ++n) {
    clsManualQuery query;
    clear(query);
    const std::string column = columns[n - 1];
    const std::string field = "Field" + std::to_string(n);
    query.SetQueryValue(field, "Q&A's \"x\"");
    const auto expect = [&](int code, const std::string& jet, const std::string& crystal) {
      query.SetQueryValue(field + "Key", code);
      EXPECT_EQ(query.JetSQL(), jet);
      EXPECT_EQ(query.CrystalSQL(), crystal);
    };
    expect(0, "Where " + column + " = 'Q&A''s \"x\"'", "{Manuals." + column + "} = 'Q&A''s \"x\"'");
    expect(1, "Where " + column + " Like '%Q&A''s \"x\"%'",
           "{Manuals." + column + "} Like '*Q&A''s \"x\"*'");
    expect(2, "Where " + column + " > 'Q&A''s \"x\"'", "{Manuals." + column + "} > 'Q&A''s \"x\"'");
    expect(3, "Where " + column + " < 'Q&A''s \"x\"'", "{Manuals." + column + "} < 'Q&A''s \"x\"'");
    expect(4, "Where " + column + " <> 'Q&A''s \"x\"'",
           "{Manuals." + column + "} <> 'Q&A''s \"x\"'");
    expect(5, "", "");
    expect(-1, "", "");
  }
}

TEST(ManualQueryTexts, HaveNoKindLevelOrDate) {
  clsManualQuery query;
  clear(query);
  query.SetQueryValue("DocType", 0);
  query.SetQueryValue("Field6", "x");
  query.SetQueryValue("Field6Key", 0);
  query.SetQueryValue("Rev1", "x");
  query.SetQueryValue("Rev1Key", 0);
  query.SetQueryValue("Rev4", at(2001, 3, 9));
  query.SetQueryValue("Rev4Key", 0);
  EXPECT_EQ(query.JetSQL(), "");
  EXPECT_EQ(query.CrystalSQL(), "");
}

TEST(ManualQueryTexts, ConditionsAreJoinedInAFixedOrder) {
  clsManualQuery query;
  for (int n = 5; n >= 1; --n) {
    query.SetQueryValue("Field" + std::to_string(n), "v" + std::to_string(n));
    query.SetQueryValue("Field" + std::to_string(n) + "Key", n - 1);
  }
  EXPECT_EQ(query.JetSQL(),
            "Where ManualName = 'v1' and ManUser1 Like '%v2%' and ManUser2 > 'v3' and ManUser3 < "
            "'v4' and ManUser4 <> 'v5'");
  EXPECT_EQ(query.CrystalSQL(),
            "{Manuals.ManualName} = 'v1' and {Manuals.ManUser1} Like '*v2*' and {Manuals.ManUser2} "
            "> 'v3' and {Manuals.ManUser3} < 'v4' and {Manuals.ManUser4} <> 'v5'");
}

TEST(ManualQueryTexts, Failures) {
  clsManualQuery fresh;
  EXPECT_RAISES(kInvalidCall, (void)fresh.JetSQL());
  EXPECT_RAISES(kInvalidCall, (void)fresh.CrystalSQL());
  for (int n = 1; n <= 5; ++n) {
    const std::string field = "Field" + std::to_string(n);
    clsManualQuery query;
    for (int m = 1; m <= 5; ++m)
      if (m != n) query.SetQueryValue("Field" + std::to_string(m), Null);
    EXPECT_RAISES(kInvalidCall, (void)query.JetSQL()) << field;
    EXPECT_RAISES(kInvalidCall, (void)query.CrystalSQL()) << field;
    query.SetQueryValue(field, "");
    EXPECT_EQ(query.JetSQL(), "") << "no code is read for a value that does not apply";
    query.SetQueryValue(field, "x");
    for (const auto& [code, number] : {std::pair{Variant("missing"), kInvalidCall},
                                       {Variant(Null), kInvalidNull},
                                       {Variant("two"), kTypeMismatch}}) {
      if (code != Variant("missing")) query.SetQueryValue(field + "Key", code);
      EXPECT_RAISES(number, (void)query.JetSQL()) << field;
      EXPECT_RAISES(number, (void)query.CrystalSQL()) << field;
    }
  }
}

TEST(ManualQueryRandom, BothTextsOfAnyCriteria) {
  std::mt19937 random(9);
  const char* columns[] = {"ManualName", "ManUser1", "ManUser2", "ManUser3", "ManUser4"};
  for (int run = 0; run < test::steps(20000); ++run) {
    clsManualQuery query;
    test::SampleMap<test::SampleValue> values;
    test::SampleMap<test::SampleCode> codes;
    for (int n = 1; n <= 5; ++n) {
      const std::string field = "Field" + std::to_string(n);
      const auto& value = test::pick(test::sampleValues(), random);
      const auto& code = random() % 10 == 0 ? test::pick(test::sampleCodes(), random)
                                            : test::sampleCodes()[random() % 5];
      if (random() % 200 != 0) {
        query.SetQueryValue(field, value.value);
        values.set(field, value);
      }
      if (random() % 200 != 0) {
        query.SetQueryValue(field + "Key", code.value);
        codes.set(field, code);
      }
    }
    const auto restated = [&](const std::string& before, const std::string& after,
                              const std::string& wildcard, const std::string& keyword) {
      std::string s;
      for (int n = 1; n <= 5; ++n) {
        const std::string field = "Field" + std::to_string(n);
        if (!values(field).applies) continue;
        const std::string column = " and " + before + columns[n - 1] + after;
        const std::string value = test::doubled(values(field).text) + "'";
        const double code = test::codeOf(codes(field));
        if (code == 0) s += column + " = '" + value;
        if (code == 1)
          s += column + " Like '" + wildcard + test::doubled(values(field).text) + wildcard + "'";
        if (code == 2) s += column + " > '" + value;
        if (code == 3) s += column + " < '" + value;
        if (code == 4) s += column + " <> '" + value;
      }
      return s.empty() ? s : keyword + s.substr(5);
    };
    ASSERT_EQ(test::outcome([&] { return query.JetSQL(); }),
              test::outcome([&] { return restated("", "", "%", "Where "); }))
        << "run " << run;
    ASSERT_EQ(test::outcome([&] { return query.CrystalSQL(); }),
              test::outcome([&] { return restated("{Manuals.", "}", "*", ""); }))
        << "run " << run;
  }
}

// ---- user queries ----

const std::vector<std::string>& userFields() {
  static const std::vector<std::string> fields = {
      "UserName", "Alias",  "Title",  "User00", "User01", "User02", "User03", "User04",
      "User05",   "User06", "User07", "User08", "User09", "User10", "User11"};
  return fields;
}

constexpr std::int32_t kShort = 2;  // a column of 16-bit integers

// A row of UserConfig: the types of User00 to User11; fields not listed have no type.
Ref<Recordset> types(const std::vector<std::pair<std::string, Variant>>& listed) {
  const auto rs = Recordset::create();
  for (const auto& [field, type] : listed) rs->Fields().Append("Type" + field, kShort);
  if (listed.empty()) rs->Fields().Append("Nothing", kShort);
  rs->Open();
  rs->AddNew();
  for (const auto& [field, type] : listed) rs->Fields("Type" + field)->Value(type);
  rs->Update();
  return rs;
}

class UserQueryTexts : public testing::Test {
 protected:
  UserQueryTexts() {
    for (const auto& field : userFields()) {
      query_.SetQueryValue(field, Null);
      query_.SetQueryValue(field + "Operator", Null);
      query_.SetQueryValue(field + "Upper", Null);
    }
    reg_.execute("Delete * From UserConfig");
    reg_.execute(
        "Insert Into UserConfig (TypeUser02, TypeUser04, TypeUser05, TypeUser06) Values (1, 2, 0, "
        "7)");
  }
  void loadTypes() { query_.LoadFieldTypes(reg_.open("Select * From UserConfig")); }
  void set(const std::string& field, const Variant& value, const Variant& code,
           const Variant& upper = Null) {
    query_.SetQueryValue(field, value);
    query_.SetQueryValue(field + "Operator", code);
    query_.SetQueryValue(field + "Upper", upper);
  }
  void expect(const std::string& jet, const std::string& crystal) {
    EXPECT_EQ(query_.JetSQL(), jet);
    EXPECT_EQ(query_.CrystalSQL(), crystal);
  }
  test::TestRegister reg_;
  clsUserQuery query_;
};

TEST_F(UserQueryTexts, WithoutCriteriaBothAreEmpty) {
  expect("", "");
  for (const auto& field : userFields()) set(field, "", 0);
  expect("", "");
  loadTypes();
  expect("", "");
}

TEST_F(UserQueryTexts, EveryOperatorOfEveryTextField) {
  loadTypes();
  for (const auto& n : userFields()) {
    if (n == "User02" || n == "User04") continue;
    set(n, "Eng", 0);
    expect(" Where " + n + " = 'Eng'", "{Users." + n + "} = 'Eng'");
    set(n, "Eng", 1);
    expect(" Where " + n + " Like '%Eng%'", "{Users." + n + "} Like '*Eng*'");
    set(n, "Eng", 2);
    expect(" Where " + n + " > 'Eng'", "{Users." + n + "} > 'Eng'");
    set(n, "Eng", 3);
    expect(" Where " + n + " < 'Eng'", "{Users." + n + "} < 'Eng'");
    set(n, "Eng", 4);
    expect(" Where " + n + " <> 'Eng'", "{Users." + n + "} <> 'Eng'");
    set(n, "Eng", 5);
    expect("", "");
    set(n, "Eng", -1);
    expect("", "");
    set(n, Null, Null);
  }
}

TEST_F(UserQueryTexts, EveryOperatorOfANumber) {
  loadTypes();
  set("User02", 5, 0);
  expect(" Where User02 = 5", "{Users.User02} = 5");
  set("User02", 5, 1);
  expect(" Where User02 > 5", "{Users.User02} > 5");
  set("User02", 5, 2);
  expect(" Where User02 < 5", "{Users.User02} < 5");
  set("User02", 5, 3, 9);
  expect(" Where User02 > 5 and {Users.User02} < 9", "{Users.User02} > 5 and {Users.User02} < 9");
  set("User02", 5, 4);
  expect(" Where User02 <> '5'", "{Users.User02} <> '5'");
  set("User02", "x", 0);
  expect(" Where User02 = x", "{Users.User02} = x");
  set("User02", 5, 6);
  expect("", "");
}

TEST_F(UserQueryTexts, EveryOperatorOfADate) {
  loadTypes();
  const Date from = at(2001, 1, 20);
  set("User04", from, 0);
  expect(" Where User04 = #1/20/2001#", "{Users.User04} = Date(2001,1,20)");
  set("User04", from, 1);
  expect(" Where User04 > #1/20/2001#", "{Users.User04} > Date(2001,1,20)");
  set("User04", from, 2);
  expect(" Where User04 < #1/20/2001#", "{Users.User04} < Date(2001,1,20)");
  set("User04", from, 3, at(2002, 3, 5));
  expect(" Where User04 > #1/20/2001# and User04 < #3/5/2002#",
         "{Users.User04} > Date(2001,1,20) and {Users.User04} < Date(2001,1,5)");
  set("User04", from, 4);
  expect(" Where User04 <> '1/20/2001'", "{Users.User04} <> '1/20/2001'");
  set("User04", "1/20/2001", 3, "3/5/2001");
  expect(" Where User04 > #1/20/2001# and User04 < #3/5/2001#",
         "{Users.User04} > Date(2001,1,20) and {Users.User04} < Date(2001,1,5)");
}

TEST_F(UserQueryTexts, CodesMeanOtherThingsForTextThanForNumbers) {
  loadTypes();
  set("User05", "5", 2);
  set("User02", "5", 2);
  expect(" Where User02 < 5 and User05 > '5'", "{Users.User02} < 5 and {Users.User05} > '5'");
}

TEST_F(UserQueryTexts, ApostrophesAreCopiedAsTheyAre) {
  loadTypes();
  set("Title", "O'Brien", 0);
  set("User04", "it's", 1);
  EXPECT_EQ(query_.JetSQL(), " Where Title = 'O'Brien' and User04 > #it's#");
  set("User04", Null, Null);
  EXPECT_EQ(query_.CrystalSQL(), "{Users.Title} = 'O'Brien'");
}

TEST_F(UserQueryTexts, ConditionsAreJoinedInAFixedOrder) {
  loadTypes();
  for (auto field = userFields().rbegin(); field != userFields().rend(); ++field)
    set(*field, "v", 4);
  std::string jet;
  std::string crystal;
  for (const auto& field : userFields()) {
    jet += (jet.empty() ? " Where " : " and ") + field + " <> 'v'";
    crystal += (crystal.empty() ? "" : " and ") + std::string("{Users.") + field + "} <> 'v'";
  }
  expect(jet, crystal);
}

TEST_F(UserQueryTexts, BuildingChangesNothing) {
  loadTypes();
  set("User02", 5, 3, 9);
  const std::string jet = query_.JetSQL();
  const std::string crystal = query_.CrystalSQL();
  expect(jet, crystal);
  EXPECT_EQ(query_.GetQueryValue("User02"), Variant(5));
}

TEST_F(UserQueryTexts, TypesMustBeLoadedOnceACriterionApplies) {
  for (const int code : {0, 1, 2, 3}) {
    set("Title", "x", code);
    EXPECT_RAISES(kInvalidCall, (void)query_.JetSQL());
    EXPECT_RAISES(kInvalidCall, (void)query_.CrystalSQL());
  }
  set("Title", "x", 4);
  expect(" Where Title <> 'x'", "{Users.Title} <> 'x'");  // the type is not asked for
  set("Title", "x", 5);
  expect("", "");
  set("Title", "x", 0);
  loadTypes();
  expect(" Where Title = 'x'", "{Users.Title} = 'x'");
}

TEST_F(UserQueryTexts, TheFirstThreeFieldsAreTextWhateverIsConfigured) {
  query_.LoadFieldTypes(types({}));
  for (const char* field : {"UserName", "Alias", "Title"}) {
    set(field, 5, 2);
    expect(std::string(" Where ") + field + " > '5'", std::string("{Users.") + field + "} > '5'");
    set(field, Null, Null);
  }
  set("User00", "x", 0);
  EXPECT_RAISES(kInvalidCall, (void)query_.JetSQL()) << "the others need a type";
}

TEST_F(UserQueryTexts, ATypeThatIsNeitherOneNorTwoIsText) {
  for (const Variant& type : {Variant(0), Variant(3), Variant(-1), Variant(Null)}) {
    clsUserQuery query;
    for (const auto& field : userFields()) query.SetQueryValue(field, Null);
    query.LoadFieldTypes(types({{"User00", type}}));
    query.SetQueryValue("User00", "x");
    query.SetQueryValue("User00Operator", 1);
    EXPECT_EQ(query.JetSQL(), " Where User00 Like '%x%'");
    EXPECT_EQ(query.CrystalSQL(), "{Users.User00} Like '*x*'");
  }
}

TEST_F(UserQueryTexts, Failures) {
  loadTypes();
  for (const auto& field : userFields()) {
    clsUserQuery query;
    query.LoadFieldTypes(reg_.open("Select * From UserConfig"));
    for (const auto& other : userFields())
      if (other != field) query.SetQueryValue(other, Null);
    EXPECT_RAISES(kInvalidCall, (void)query.JetSQL()) << field;
    EXPECT_RAISES(kInvalidCall, (void)query.CrystalSQL()) << field;
    query.SetQueryValue(field, at(2001, 3, 9));
    EXPECT_RAISES(kInvalidCall, (void)query.JetSQL()) << "no operator: " << field;
    EXPECT_RAISES(kInvalidCall, (void)query.CrystalSQL()) << "no operator: " << field;
    query.SetQueryValue(field + "Operator", Null);
    EXPECT_RAISES(kInvalidNull, (void)query.JetSQL()) << field;
    EXPECT_RAISES(kInvalidNull, (void)query.CrystalSQL()) << field;
    query.SetQueryValue(field + "Operator", "two");
    EXPECT_RAISES(kTypeMismatch, (void)query.JetSQL()) << field;
    EXPECT_RAISES(kTypeMismatch, (void)query.CrystalSQL()) << field;
    query.SetQueryValue(field + "Operator", 3);
    const bool range = field == "User02" || field == "User04";
    EXPECT_EQ(test::numberOf([&] { (void)query.JetSQL(); }), range ? kInvalidCall : 0) << field;
    EXPECT_EQ(test::numberOf([&] { (void)query.CrystalSQL(); }), range ? kInvalidCall : 0) << field;
  }
}

TEST_F(UserQueryTexts, FormulasReadDatesAsStatementsDo) {
  loadTypes();
  for (const auto& [text, day] : {std::pair{"25/7/2018", "2018,7,25"},
                                  {"20 Jan 2001", "2001,1,20"},
                                  {"1/2/99", "1999,1,2"},
                                  {"2:05 PM", "1899,12,30"}}) {
    set("User04", text, 0);
    expect(std::string(" Where User04 = #") + text + "#",
           std::string("{Users.User04} = Date(") + day + ")");
  }
  set("User04", "20 Jan 2001", 3, "5 Mar 2001");
  expect(" Where User04 > #20 Jan 2001# and User04 < #5 Mar 2001#",
         "{Users.User04} > Date(2001,1,20) and {Users.User04} < Date(2001,1,5)");
}

TEST_F(UserQueryTexts, WhatIsNoDateFailsInReportsOnly) {
  loadTypes();
  for (const int code : {0, 1, 2, 3}) {
    set("User04", "soon", code, "later");
    EXPECT_NO_THROW((void)query_.JetSQL());
    EXPECT_RAISES(kTypeMismatch, (void)query_.CrystalSQL()) << code;
  }
  set("User04", "soon", 4);
  EXPECT_EQ(query_.CrystalSQL(), "{Users.User04} <> 'soon'");
  set("User04", at(2001, 3, 9), 3, "later");
  EXPECT_RAISES(kTypeMismatch, (void)query_.CrystalSQL()) << "the end of a range too";
}

TEST(UserQueryRandom, BothTextsOfAnyCriteria) {
  std::mt19937 random(93);
  int ranges = 0;
  for (int run = 0; run < test::steps(10000); ++run) {
    clsUserQuery query;
    test::SampleMap<test::SampleValue> values;
    test::SampleMap<test::SampleValue> uppers;
    test::SampleMap<test::SampleCode> codes;
    std::map<std::string, int> typeOf = {{"UserName", 0}, {"Alias", 0}, {"Title", 0}};
    std::vector<std::pair<std::string, Variant>> configured;
    for (const auto& field : userFields()) {
      const auto& value =
          random() % 3 != 0 ? test::sampleValues()[0] : test::pick(test::sampleValues(), random);
      const auto& upper = test::pick(test::sampleValues(), random);
      const auto& code = random() % 20 == 0 ? test::pick(test::sampleCodes(), random)
                                            : test::sampleCodes()[random() % 5];
      if (random() % 300 != 0) {
        query.SetQueryValue(field, value.value);
        values.set(field, value);
      }
      if (random() % 300 != 0) {
        query.SetQueryValue(field + "Operator", code.value);
        codes.set(field, code);
      }
      if (random() % 50 != 0) {
        query.SetQueryValue(field + "Upper", upper.value);
        uppers.set(field, upper);
      }
      if (!typeOf.contains(field) && random() % 300 != 0) {
        typeOf[field] = static_cast<int>(random() % 4);
        configured.emplace_back(field, typeOf[field]);
      }
    }
    query.LoadFieldTypes(types(configured));

    const auto restated = [&](bool crystal) {
      std::string s;
      for (const auto& n : userFields()) {
        const auto& v = values(n);
        if (!v.applies) continue;
        const double k = test::codeOf(codes(n));
        const std::string column = " and " + (crystal ? "{Users." + n + "}" : n);
        const std::string star = crystal ? "*" : "%";
        if (k == 4) s += column + " <> '" + v.text + "'";
        if (k != 0 && k != 1 && k != 2 && k != 3) continue;
        if (!typeOf.contains(n)) throw test::Failure{kInvalidCall};
        const int t = typeOf.at(n);
        if (t != 1 && t != 2) {
          if (k == 0) s += column + " = '" + v.text + "'";
          if (k == 1) s += column + " Like '" + star + v.text + star + "'";
          if (k == 2) s += column + " > '" + v.text + "'";
          if (k == 3) s += column + " < '" + v.text + "'";
          continue;
        }
        const std::string value = t == 1    ? v.text
                                  : crystal ? "Date(" + test::dayOf(v) + ")"
                                            : "#" + v.text + "#";
        if (k == 0) s += column + " = " + value;
        if (k == 1) s += column + " > " + value;
        if (k == 2) s += column + " < " + value;
        if (k != 3) continue;
        ++ranges;
        const auto& u = uppers(n);
        s += column + " > " + value;
        if (t == 1) {
          s += " and {Users." + n + "} < " + u.text;
        } else if (!crystal) {
          s += " and " + n + " < #" + u.text + "#";
        } else {
          // Empty counts as the day from which days are counted.
          if (!u.day && !u.value.isEmpty())
            throw test::Failure{u.value.isNull() ? kInvalidNull : kTypeMismatch};
          const int day = u.day ? (*u.day)[2] : 30;
          s += column + " < Date(" + std::to_string((*v.day)[0]) + "," +
               std::to_string((*v.day)[1]) + "," + std::to_string(day) + ")";
        }
      }
      return s.empty() ? s : (crystal ? "" : " Where ") + s.substr(5);
    };
    ASSERT_EQ(test::outcome([&] { return query.JetSQL(); }),
              test::outcome([&] { return restated(false); }))
        << "run " << run;
    ASSERT_EQ(test::outcome([&] { return query.CrystalSQL(); }),
              test::outcome([&] { return restated(true); }))
        << "run " << run;
  }
  EXPECT_GT(ranges, test::steps(1000)) << "ranges must occur";
}

}  // namespace
}  // namespace kv
