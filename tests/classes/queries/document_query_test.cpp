// SPDX-License-Identifier: Apache-2.0
// The two texts of a document query, letter for letter.
#include "classes/queries/document_query.h"

#include <gtest/gtest.h>

#include "classes/queries/samples.h"
#include "support/scale.h"
#include "support/session_test.h"

namespace kv {
namespace {

using test::at;

// A query whose criteria are all Null, as a new stored one has them.
class DocumentQueryTexts : public testing::Test {
 protected:
  DocumentQueryTexts() {
    for (const char* name :
         {"QueryID",   "QueryName", "DocType", "Field1",    "Field1Key", "Field2",    "Field2Key",
          "Field3",    "Field3Key", "Field4",  "Field4Key", "Field5",    "Field5Key", "Field6",
          "Field6Key", "Field7",    "Rev1",    "Rev1Key",   "Rev4",      "Rev4Key",   "Rev5"})
      query_.SetQueryValue(name, Null);
  }
  void set(const std::string& name, const Variant& value) { query_.SetQueryValue(name, value); }
  void set(const std::string& name, const Variant& value, const std::string& key,
           const Variant& code) {
    set(name, value);
    set(key, code);
  }
  clsDocumentQuery query_;
};

TEST_F(DocumentQueryTexts, WithoutCriteriaBothAreEmpty) {
  EXPECT_EQ(query_.JetSQL(), "");
  EXPECT_EQ(query_.CrystalSQL(), "");
}

TEST_F(DocumentQueryTexts, OfANewStoredQueryBothAreEmpty) {
  const test::TestRegister reg;
  reg.execute("Insert Into DocumentQuerys (QueryName) Values ('new')");
  clsDocumentQuery stored;
  stored.LoadQuery(reg.open("Select * From DocumentQuerys"));
  EXPECT_EQ(stored.JetSQL(), "");
  EXPECT_EQ(stored.CrystalSQL(), "");
}

TEST_F(DocumentQueryTexts, TheKindOfDocument) {
  struct Case {
    Variant type;
    const char* jet;
    const char* crystal;
  };
  for (const Case& c : {Case{0, "Where Controlled <> 0", "{Documents.Controlled} <> 0"},
                        Case{1, "Where Controlled = False", "{Documents.Controlled} = False"},
                        Case{"0", "Where Controlled <> 0", "{Documents.Controlled} <> 0"},
                        Case{"1", "Where Controlled = False", "{Documents.Controlled} = False"},
                        Case{2, "", ""}, Case{-1, "", ""}, Case{0.5, "", ""}, Case{Null, "", ""},
                        Case{"both", "", ""}, Case{"", "", ""}}) {
    set("DocType", c.type);
    EXPECT_EQ(query_.JetSQL(), c.jet) << test::shown(c.type);
    EXPECT_EQ(query_.CrystalSQL(), c.crystal) << test::shown(c.type);
  }
}

TEST_F(DocumentQueryTexts, EveryOperatorOfEveryField) {
  struct Field {
    const char* name;
    const char* column;
  };
  for (const Field& f : {Field{"Field1", "DocumentTitle"}, Field{"Field2", "DocumentNumber"},
                         Field{"Field3", "DocUser1"}, Field{"Field4", "DocUser2"},
                         Field{"Field5", "DocUser3"}, Field{"Field6", "DocUser4"}}) {
    const std::string column = f.column;
    const auto expect = [&](int code, const std::string& jet, const std::string& crystal) {
      set(f.name, "A'B \"C\"", f.name + std::string("Key"), code);
      EXPECT_EQ(query_.JetSQL(), jet);
      EXPECT_EQ(query_.CrystalSQL(), crystal);
    };
    expect(0, "Where " + column + " = 'A''B \"C\"'", "{Documents." + column + "} = 'A''B \"C\"'");
    expect(1, "Where " + column + " Like '%A''B \"C\"%'",
           "{Documents." + column + "} Like '*A''B \"C\"*'");
    expect(2, "Where " + column + " > 'A''B \"C\"'", "{Documents." + column + "} > 'A''B \"C\"'");
    expect(3, "Where " + column + " < 'A''B \"C\"'", "{Documents." + column + "} < 'A''B \"C\"'");
    expect(4, "Where " + column + " <> 'A''B \"C\"'", "{Documents." + column + "} <> 'A''B \"C\"'");
    expect(5, "", "");
    expect(9, "", "");
    expect(-1, "", "");
    set(f.name, Null);
  }
}

TEST_F(DocumentQueryTexts, EveryOperatorOfTheRevisionLevel) {
  struct Case {
    int code;
    const char* jet;
    const char* crystal;
  };
  set("Rev1", "B'");
  set("Field7", "C'");
  for (const Case& c :
       {Case{0, "Where Documents.RevisionLevel = 'B'''", "{Documents.RevisionLevel} = 'C'''"},
        Case{1, "Where Documents.RevisionLevel Like '%B''%'",
             "{Documents.RevisionLevel} Like '%C''%'"},
        Case{2, "Where Documents.RevisionLevel > 'B'''", "{Documents.RevisionLevel} > 'C'''"},
        Case{3, "Where Documents.RevisionLevel < 'B'''", "{Documents.RevisionLevel} < 'C'''"},
        Case{4, "Where Documents.RevisionLevel <> 'B'''", "{Documents.RevisionLevel} <> 'C'''"},
        Case{5, "", ""}, Case{-1, "", ""}}) {
    set("Rev1Key", c.code);
    EXPECT_EQ(query_.JetSQL(), c.jet);
    EXPECT_EQ(query_.CrystalSQL(), c.crystal);
  }
}

TEST_F(DocumentQueryTexts, TheLevelOfReportsIsACriterionOfItsOwn) {
  set("Rev1", "B", "Rev1Key", 0);
  EXPECT_EQ(query_.JetSQL(), "Where Documents.RevisionLevel = 'B'");
  EXPECT_EQ(query_.CrystalSQL(), "{Documents.RevisionLevel} = ''") << "Null joins as nothing";
  set("Rev1", "");
  set("Field7", "C");
  EXPECT_EQ(query_.JetSQL(), "");
  EXPECT_EQ(query_.CrystalSQL(), "") << "it does not apply by itself";
}

TEST_F(DocumentQueryTexts, EveryOperatorOfTheEffectiveDate) {
  struct Case {
    int code;
    const char* jet;
    const char* crystal;
  };
  set("Rev4", at(2001, 3, 9));
  set("Rev5", at(2001, 4, 1));
  for (const Case& c :
       {Case{0, "Where Documents.EffectiveDate = #3/9/2001#",
             "{Documents.EffectiveDate} = Date(2001,3,9)"},
        Case{1, "Where Documents.EffectiveDate > #3/9/2001#",
             "{Documents.EffectiveDate} > Date(2001,3,9)"},
        Case{2, "Where Documents.EffectiveDate < #3/9/2001#", ""},
        Case{3,
             "Where Documents.EffectiveDate > #3/9/2001# and Documents.EffectiveDate < #4/1/2001#",
             "{Documents.EffecitveDate} < Date(2001,3,9)"},
        Case{4, "",
             "{Documents.EffecitveDate} > Date(2001,3,9) and {Documents.EffectiveDate} < "
             "Date(2001,3,9)"},
        Case{5, "", ""}, Case{-1, "", ""}}) {
    set("Rev4Key", c.code);
    EXPECT_EQ(query_.JetSQL(), c.jet);
    EXPECT_EQ(query_.CrystalSQL(), c.crystal);
  }
}

TEST_F(DocumentQueryTexts, DatesStandAsTheirText) {
  set("Rev4", at(2001, 12, 31, 14, 5, 9), "Rev4Key", 0);
  EXPECT_EQ(query_.JetSQL(), "Where Documents.EffectiveDate = #12/31/2001 2:05:09 PM#");
  EXPECT_EQ(query_.CrystalSQL(), "{Documents.EffectiveDate} = Date(2001,12,31)");
  set("Rev4", "2001-03-09");
  EXPECT_EQ(query_.JetSQL(), "Where Documents.EffectiveDate = #2001-03-09#");
  EXPECT_EQ(query_.CrystalSQL(), "{Documents.EffectiveDate} = Date(2001,3,9)");
  set("Rev4", "it's soon");
  EXPECT_EQ(query_.JetSQL(), "Where Documents.EffectiveDate = #it's soon#") << "and not quoted";
  EXPECT_RAISES(kTypeMismatch, (void)query_.CrystalSQL());
  set("Rev4Key", 2);
  EXPECT_EQ(query_.CrystalSQL(), "") << "no year is taken for a code that adds nothing";
  set("Rev4Key", 3);
  EXPECT_EQ(query_.JetSQL(),
            "Where Documents.EffectiveDate > #it's soon# and Documents.EffectiveDate < ##");
}

TEST_F(DocumentQueryTexts, ConditionsAreJoinedInAFixedOrder) {
  set("Rev5", at(2002, 1, 1));
  set("Rev4", at(2001, 1, 1), "Rev4Key", 3);
  set("Rev1", "B", "Rev1Key", 2);
  set("Field7", "C");
  set("Field6", "f", "Field6Key", 4);
  set("Field5", "e", "Field5Key", 3);
  set("Field4", "d", "Field4Key", 2);
  set("Field3", "c", "Field3Key", 1);
  set("Field2", "b", "Field2Key", 0);
  set("Field1", "a", "Field1Key", 1);
  set("DocType", 1);
  EXPECT_EQ(query_.JetSQL(),
            "Where Controlled = False and DocumentTitle Like '%a%' and DocumentNumber = 'b' and "
            "DocUser1 Like '%c%' and DocUser2 > 'd' and DocUser3 < 'e' and DocUser4 <> 'f' and "
            "Documents.RevisionLevel > 'B' and Documents.EffectiveDate > #1/1/2001# and "
            "Documents.EffectiveDate < #1/1/2002#");
  EXPECT_EQ(query_.CrystalSQL(),
            "{Documents.Controlled} = False and {Documents.DocumentTitle} Like '*a*' and "
            "{Documents.DocumentNumber} = 'b' and {Documents.DocUser1} Like '*c*' and "
            "{Documents.DocUser2} > 'd' and {Documents.DocUser3} < 'e' and {Documents.DocUser4} <> "
            "'f' and {Documents.RevisionLevel} > 'C' and {Documents.EffecitveDate} < "
            "Date(2001,1,1)");
}

TEST_F(DocumentQueryTexts, CriteriaThatAreNullOrEmptyDoNotApply) {
  for (const Variant& nothing : {Variant(Null), Variant(""), Variant()}) {
    for (int n = 1; n <= 6; ++n)
      set("Field" + std::to_string(n), nothing, "Field" + std::to_string(n) + "Key", 0);
    set("Rev1", nothing, "Rev1Key", 0);
    set("Rev4", nothing, "Rev4Key", 0);
    EXPECT_EQ(query_.JetSQL(), "");
    EXPECT_EQ(query_.CrystalSQL(), "");
  }
  set("Field1", " ");
  EXPECT_EQ(query_.JetSQL(), "Where DocumentTitle = ' '") << "a blank is a value";
}

TEST_F(DocumentQueryTexts, BuildingChangesNothing) {
  set("Field1", "O'Brien", "Field1Key", 0);
  const std::string jet = query_.JetSQL();
  const std::string crystal = query_.CrystalSQL();
  EXPECT_EQ(query_.JetSQL(), jet);
  EXPECT_EQ(query_.CrystalSQL(), crystal);
  EXPECT_EQ(query_.GetQueryValue("Field1"), Variant("O'Brien"));
  EXPECT_EQ(query_.GetQueryValue("Rev4"), Variant(Null));
}

TEST_F(DocumentQueryTexts, LongValuesAndManyApostrophes) {
  set("Field1", std::string(10000, '\''), "Field1Key", 0);
  EXPECT_EQ(query_.JetSQL(), "Where DocumentTitle = '" + std::string(20000, '\'') + "'");
  std::string mixed;
  std::string expected;
  for (int i = 0; i < 5000; ++i) {
    mixed += "'\"";
    expected += "''\"";
  }
  set("Field1", mixed);
  EXPECT_EQ(query_.CrystalSQL(), "{Documents.DocumentTitle} = '" + expected + "'");
}

// ---- failures ----

// A query that holds only what is listed.
clsDocumentQuery& fill(clsDocumentQuery& query, const std::vector<std::string>& without = {}) {
  for (const char* name : {"DocType", "Field1", "Field2", "Field3", "Field4", "Field5", "Field6",
                           "Field7", "Rev1", "Rev4", "Rev5", "Field1Key", "Field2Key", "Field3Key",
                           "Field4Key", "Field5Key", "Field6Key", "Rev1Key", "Rev4Key"}) {
    if (std::find(without.begin(), without.end(), name) != without.end()) continue;
    const std::string key = name;
    query.SetQueryValue(key, key.ends_with("Key") ? Variant(3) : Variant(at(2001, 3, 9)));
  }
  return query;
}

TEST(DocumentQueryFailures, AMissingCriterionRaises) {
  clsDocumentQuery fresh;
  EXPECT_RAISES(kInvalidCall, (void)fresh.JetSQL());
  EXPECT_RAISES(kInvalidCall, (void)fresh.CrystalSQL());
  clsDocumentQuery whole;
  EXPECT_NO_THROW((void)fill(whole).JetSQL());
  EXPECT_NO_THROW((void)whole.CrystalSQL());
  for (const char* name : {"DocType", "Field1", "Field2", "Field3", "Field4", "Field5", "Field6",
                           "Rev1", "Rev4", "Field1Key", "Field2Key", "Field3Key", "Field4Key",
                           "Field5Key", "Field6Key", "Rev1Key", "Rev4Key"}) {
    clsDocumentQuery query;
    fill(query, {name});
    EXPECT_RAISES(kInvalidCall, (void)query.JetSQL()) << name;
    EXPECT_RAISES(kInvalidCall, (void)query.CrystalSQL()) << name;
  }
  clsDocumentQuery withoutEnd;
  fill(withoutEnd, {"Rev5"});
  EXPECT_RAISES(kInvalidCall, (void)withoutEnd.JetSQL());
  EXPECT_NO_THROW((void)withoutEnd.CrystalSQL()) << "which has no use for it";
  withoutEnd.SetQueryValue("Rev4Key", 2);
  EXPECT_NO_THROW((void)withoutEnd.JetSQL()) << "only a range needs an end";
  clsDocumentQuery withoutLevel;
  fill(withoutLevel, {"Field7"});
  EXPECT_NO_THROW((void)withoutLevel.JetSQL()) << "which has no use for it";
  EXPECT_RAISES(kInvalidCall, (void)withoutLevel.CrystalSQL());
  withoutLevel.SetQueryValue("Rev1", Null);
  EXPECT_NO_THROW((void)withoutLevel.CrystalSQL()) << "only when the level applies";
}

TEST(DocumentQueryFailures, AnOperatorIsReadOnlyWhenItsValueApplies) {
  for (const auto& [value, key] : {std::pair{"Field1", "Field1Key"},
                                   {"Field6", "Field6Key"},
                                   {"Rev1", "Rev1Key"},
                                   {"Rev4", "Rev4Key"}}) {
    for (const auto& [code, number] : {std::pair{Variant(Null), kInvalidNull},
                                       {Variant("two"), kTypeMismatch},
                                       {Variant(""), kTypeMismatch}}) {
      clsDocumentQuery query;
      fill(query).SetQueryValue(key, code);
      EXPECT_RAISES(number, (void)query.JetSQL()) << key;
      EXPECT_RAISES(number, (void)query.CrystalSQL()) << key;
      query.SetQueryValue(value, Null);
      EXPECT_NO_THROW((void)query.JetSQL()) << key;
      EXPECT_NO_THROW((void)query.CrystalSQL()) << key;
    }
    clsDocumentQuery query;
    fill(query, {key}).SetQueryValue(value, "");
    EXPECT_NO_THROW((void)query.JetSQL()) << key;
    EXPECT_NO_THROW((void)query.CrystalSQL()) << key;
  }
}

// ---- any criteria at all ----

// The texts once more, from lists of what each code adds, sharing nothing with the library.
class Restated {
 public:
  test::SampleMap<test::SampleValue> values;
  test::SampleMap<test::SampleCode> codes;
  std::string jet() const {
    std::string s;
    const auto& kind = codes("DocType");
    if (kind.error == 0 && kind.code == 0) s += " and Controlled <> 0";
    if (kind.error == 0 && kind.code == 1) s += " and Controlled = False";
    const char* columns[] = {"DocumentTitle", "DocumentNumber", "DocUser1",
                             "DocUser2",      "DocUser3",       "DocUser4"};
    for (int i = 1; i <= 6; ++i)
      s += text("Field" + std::to_string(i), "Field" + std::to_string(i) + "Key",
                "Field" + std::to_string(i), columns[i - 1], "%");
    s += text("Rev1", "Rev1Key", "Rev1", "Documents.RevisionLevel", "%");
    const auto& date = values("Rev4");
    if (date.applies) {
      const double code = test::codeOf(codes("Rev4Key"));
      if (code == 0) s += " and Documents.EffectiveDate = #" + date.text + "#";
      if (code == 1) s += " and Documents.EffectiveDate > #" + date.text + "#";
      if (code == 2) s += " and Documents.EffectiveDate < #" + date.text + "#";
      if (code == 3)
        s += " and Documents.EffectiveDate > #" + date.text + "# and Documents.EffectiveDate < #" +
             values("Rev5").text + "#";
    }
    return s.empty() ? s : "Where " + s.substr(5);
  }
  std::string crystal() const {
    std::string s;
    const auto& kind = codes("DocType");
    if (kind.error == 0 && kind.code == 0) s += " and {Documents.Controlled} <> 0";
    if (kind.error == 0 && kind.code == 1) s += " and {Documents.Controlled} = False";
    const char* columns[] = {"{Documents.DocumentTitle}", "{Documents.DocumentNumber}",
                             "{Documents.DocUser1}",      "{Documents.DocUser2}",
                             "{Documents.DocUser3}",      "{Documents.DocUser4}"};
    for (int i = 1; i <= 6; ++i)
      s += text("Field" + std::to_string(i), "Field" + std::to_string(i) + "Key",
                "Field" + std::to_string(i), columns[i - 1], "*");
    s += text("Rev1", "Rev1Key", "Field7", "{Documents.RevisionLevel}", "%");
    const auto& date = values("Rev4");
    if (date.applies) {
      const double code = test::codeOf(codes("Rev4Key"));
      const auto day = [&] { return "Date(" + test::dayOf(date) + ")"; };
      if (code == 0) s += " and {Documents.EffectiveDate} = " + day();
      if (code == 1) s += " and {Documents.EffectiveDate} > " + day();
      if (code == 3) s += " and {Documents.EffecitveDate} < " + day();
      if (code == 4)
        s += " and {Documents.EffecitveDate} > " + day() + " and {Documents.EffectiveDate} < " +
             day();
    }
    return s.empty() ? s : s.substr(5);
  }

 private:
  std::string text(const std::string& tested, const std::string& key, const std::string& compared,
                   const std::string& column, const std::string& wildcard) const {
    if (!values(tested).applies) return "";
    const double code = test::codeOf(codes(key));
    const std::string value = test::doubled(values(compared).text);
    if (code == 0) return " and " + column + " = '" + value + "'";
    if (code == 1) return " and " + column + " Like '" + wildcard + value + wildcard + "'";
    if (code == 2) return " and " + column + " > '" + value + "'";
    if (code == 3) return " and " + column + " < '" + value + "'";
    if (code == 4) return " and " + column + " <> '" + value + "'";
    return "";
  }
};

TEST(DocumentQueryRandom, BothTextsOfAnyCriteria) {
  const std::vector<std::string> names = {"Field1", "Field2", "Field3", "Field4", "Field5",
                                          "Field6", "Field7", "Rev1",   "Rev4",   "Rev5"};
  const std::vector<std::string> keys = {"DocType",   "Field1Key", "Field2Key",
                                         "Field3Key", "Field4Key", "Field5Key",
                                         "Field6Key", "Rev1Key",   "Rev4Key"};
  std::mt19937 random(20010309);
  int texts = 0;
  for (int run = 0; run < test::steps(20000); ++run) {
    clsDocumentQuery query;
    Restated restated;
    // Mostly whole, mostly with good codes: otherwise nearly every run would end in an error.
    const auto absent = [&] { return random() % 200 == 0; };
    for (const auto& name : names) {
      if (absent()) continue;
      const auto& sample = test::pick(test::sampleValues(), random);
      query.SetQueryValue(name, sample.value);
      restated.values.set(name, sample);
    }
    for (const auto& key : keys) {
      if (absent()) continue;
      const auto& sample = random() % 10 == 0 ? test::pick(test::sampleCodes(), random)
                                              : test::sampleCodes()[random() % 5];
      query.SetQueryValue(key, sample.value);
      restated.codes.set(key, sample);
    }
    const std::string jet = test::outcome([&] { return restated.jet(); });
    const std::string crystal = test::outcome([&] { return restated.crystal(); });
    ASSERT_EQ(test::outcome([&] { return query.JetSQL(); }), jet) << "run " << run;
    ASSERT_EQ(test::outcome([&] { return query.CrystalSQL(); }), crystal) << "run " << run;
    if (!jet.starts_with("error")) ++texts;
  }
  EXPECT_GT(texts, test::steps(5000)) << "most of the runs must tell something";
}

}  // namespace
}  // namespace kv
