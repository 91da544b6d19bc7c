// SPDX-License-Identifier: Apache-2.0
// A real register of 655 documents: saved queries, answered once by the register and once from the
// CSV files by plain loops; and every document loaded and saved, after which nothing may differ.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <optional>
#include <random>
#include <set>

#include "classes/documents/document_session.h"
#include "desk/register/import/csv_table.h"
#include "desk/register/import/importer.h"
#include "support/scale.h"
#include "support/shared_data.h"

namespace kv {
namespace {

using test::LoadedDocument;
using test::Texts;

std::string lower(std::string text) {
  for (char& c : text)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return text;
}

// One document of the CSV file; texts that are not given are Null in the register.
struct Line {
  std::string key, title, number, group, category, created, participating, level, effective,
      location, notes, revision;
  bool controlled = false;
  bool secured = false;
};

using Passes = std::function<bool(const Line&)>;

// The fields that document queries compare, as the CSV file has them.
struct ComparedField {
  const char* name;
  const char* code;
  std::string Line::*text;
};
constexpr std::array<ComparedField, 7> kFields = {
    ComparedField{"Field1", "Field1Key", &Line::title},
    ComparedField{"Field2", "Field2Key", &Line::number},
    ComparedField{"Field3", "Field3Key", &Line::group},
    ComparedField{"Field4", "Field4Key", &Line::category},
    ComparedField{"Field5", "Field5Key", &Line::created},
    ComparedField{"Field6", "Field6Key", &Line::participating},
    ComparedField{"Rev1", "Rev1Key", &Line::level}};

// A comparison of texts as people make it who do not mind the case; nothing compares with a text
// that is not given.
bool compares(const std::string& text, int code, const std::string& value) {
  if (text.empty()) return false;
  const std::string a = lower(text);
  const std::string b = lower(value);
  switch (code) {
    case 0: return a == b;
    case 1: return a.find(b) != std::string::npos;
    case 2: return a > b;
    case 3: return a < b;
    case 4: return a != b;
    default: return true;
  }
}

Date dateOf(const std::string& iso) {
  return test::at(std::stoi(iso.substr(0, 4)), std::stoi(iso.substr(5, 2)),
                  std::stoi(iso.substr(8, 2)));
}

class RealDocuments : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    const auto folder = test::sharedData("proposals-register");
    if (!folder) return;
    reg_ = new test::TestRegister;
    desk::Importer importer(reg_->connection(), test::at(2026, 7, 24, 23, 57, 50), "User0", {});
    const auto report = importer.run(*folder);
    ASSERT_TRUE(report.problems.empty());
    reg_->addUser(9001, "Anna", "secret", true);
    reg_->addUser(9002, "Bert", "secret");

    const std::vector<std::string> columns = {"document_key",
                                              "document_number",
                                              "title",
                                              "workgroup",
                                              "category",
                                              "controlled",
                                              "secured",
                                              "current_level",
                                              "effective_date",
                                              "current_revision",
                                              "location",
                                              "creation_date",
                                              "participating_groups",
                                              "notes"};
    std::vector<desk::Problem> problems;
    const desk::CsvTable csv(*folder, "documents", columns, problems);
    ASSERT_TRUE(problems.empty());
    lines_ = new std::vector<Line>;
    for (std::size_t r = 0; r < csv.rows(); ++r) {
      const auto text = [&](const char* column) { return csv.at(r, column); };
      lines_->push_back(
          {text("document_key"), text("title"), text("document_number"), text("workgroup"),
           text("category"), text("creation_date"), text("participating_groups"),
           text("current_level"), text("effective_date"), text("location"), text("notes"),
           text("current_revision"), text("controlled") == "yes", text("secured") == "yes"});
    }
  }
  static void TearDownTestSuite() {
    delete reg_;
    delete lines_;
    reg_ = nullptr;
    lines_ = nullptr;
  }
  void SetUp() override {
    if (reg_ == nullptr)
      GTEST_SKIP() << "no proposals-register beside the checkout or in KVVESK_DATA";
    ASSERT_EQ(lines_->size(), 655U);
    anna_->Login("Anna", "secret", reg_->path());
    bert_->Login("Bert", "secret", reg_->path());
  }
  void TearDown() override {
    if (reg_ != nullptr) reg_->execute("Delete * From DocumentQuerys");
  }

  // Keys of the lines that pass, by title and then as in the file: the order of a list.
  static Texts expected(const Passes& passes, bool secured) {
    std::vector<std::size_t> found;
    for (std::size_t i = 0; i < lines_->size(); ++i)
      if (passes((*lines_)[i]) && (secured || !(*lines_)[i].secured)) found.push_back(i);
    std::stable_sort(found.begin(), found.end(), [](std::size_t a, std::size_t b) {
      return lower((*lines_)[a].title) < lower((*lines_)[b].title);
    });
    Texts out;
    for (const auto i : found) out.push_back((*lines_)[i].key);
    return out;
  }
  // The same from a list of the register; a document's row number is the number in its key.
  static Texts actual(clsVeskDocument& document, std::int32_t query) {
    Texts out;
    for (const auto& id : test::rowsOf(*document.Records(query, "", "", "ID")))
      out.push_back(fmt::format("D{:04}", std::stoi(id)));
    return out;
  }
  // Asks a saved query of the register, as an administrator and as an ordinary user, and its
  // restatement of the lines. Returns how many documents the administrator found.
  std::size_t ask(const std::map<std::string, Variant>& criteria, const Passes& passes) {
    const auto query = anna_->Document()->AddQuery();
    for (const auto& [name, value] : criteria) query->SetQueryValue(name, value);
    anna_->Document()->SaveQuery(query);
    const auto all = expected(passes, true);
    EXPECT_EQ(actual(*anna_->Document(), query->id()), all) << query->JetSQL();
    EXPECT_EQ(actual(*bert_->Document(), query->id()), expected(passes, false)) << query->JetSQL();
    anna_->Document()->DeleteQuery(query->id());
    return all.size();
  }
  // Values that occur in a field, spread over its order, with the case turned for some.
  static Texts valuesOf(const ComparedField& field, std::size_t wanted) {
    std::set<std::string> distinct;
    for (const auto& line : *lines_)
      if (!(line.*field.text).empty()) distinct.insert(line.*field.text);
    const Texts all(distinct.begin(), distinct.end());
    Texts out;
    for (std::size_t i = 0; i < wanted; ++i) {
      std::string value = all[i * (all.size() - 1) / (wanted - 1)];
      if (i % 2 == 1) value = lower(value);
      out.push_back(value);
    }
    return out;
  }

  static test::TestRegister* reg_;
  static std::vector<Line>* lines_;
  test::TestSession anna_;
  test::TestSession bert_;
};

test::TestRegister* RealDocuments::reg_ = nullptr;
std::vector<Line>* RealDocuments::lines_ = nullptr;

TEST_F(RealDocuments, EveryOperatorOfEveryField) {
  for (const auto& field : kFields)
    for (int code = 0; code <= 4; ++code) {
      std::size_t found = 0;
      for (const auto& value : valuesOf(field, 7))
        found += ask({{field.name, value}, {field.code, code}},
                     [&](const Line& line) { return compares(line.*field.text, code, value); });
      EXPECT_GT(found, 0U) << field.name << " with " << code << " must find something";
    }
}

TEST_F(RealDocuments, PartsOfTitles) {
  for (const char* part :
       {"API", "api", "Pod", "server-side", "e", "zzz", " ", "(", "kep template"})
    ask({{"Field1", part}, {"Field1Key", 1}},
        [&](const Line& line) { return compares(line.title, 1, part); });
}

TEST_F(RealDocuments, AnApostropheInAValue) {
  std::size_t withOne = 0;
  for (const auto& given : *lines_) {
    if (given.title.find('\'') == std::string::npos) continue;
    ++withOne;
    for (int code = 0; code <= 4; ++code)
      EXPECT_GT(ask({{"Field1", given.title}, {"Field1Key", code}},
                    [&](const Line& line) { return compares(line.title, code, given.title); }),
                0U);
  }
  EXPECT_EQ(withOne, 6U);
  EXPECT_EQ(ask({{"Field1", "'"}, {"Field1Key", 1}},
                [](const Line& line) { return line.title.find('\'') != std::string::npos; }),
            6U);
  EXPECT_EQ(ask({{"Field1", "''"}, {"Field1Key", 1}},
                [](const Line& line) { return line.title.find("''") != std::string::npos; }),
            0U);
  ask({{"Field3", "sig's"}, {"Field3Key", 2}},
      [](const Line& line) { return compares(line.group, 2, "sig's"); });
}

TEST_F(RealDocuments, KindsOfDocuments) {
  const std::size_t controlled =
      ask({{"DocType", 0}}, [](const Line& line) { return line.controlled; });
  const std::size_t others =
      ask({{"DocType", 1}}, [](const Line& line) { return !line.controlled; });
  EXPECT_EQ(ask({{"DocType", 2}}, [](const Line&) { return true; }), 655U);
  EXPECT_EQ(ask({}, [](const Line&) { return true; }), 655U);
  EXPECT_GT(controlled, 0U);
  EXPECT_GT(others, 0U);
  EXPECT_EQ(controlled + others, 655U);
}

TEST_F(RealDocuments, EveryOperatorOfTheEffectiveDate) {
  std::set<std::string> distinct;
  for (const auto& line : *lines_)
    if (!line.effective.empty()) distinct.insert(line.effective);
  const Texts dates(distinct.begin(), distinct.end());
  for (std::size_t i = 0; i < dates.size(); i += 25) {
    const std::string& day = dates[i];
    EXPECT_GT(ask({{"Rev4", dateOf(day)}, {"Rev4Key", 0}},
                  [&](const Line& line) { return line.effective == day; }),
              0U);
    ask({{"Rev4", dateOf(day)}, {"Rev4Key", 1}},
        [&](const Line& line) { return !line.effective.empty() && line.effective > day; });
    ask({{"Rev4", dateOf(day)}, {"Rev4Key", 2}},
        [&](const Line& line) { return !line.effective.empty() && line.effective < day; });
  }
}

TEST_F(RealDocuments, RangesOfDatesAreWithoutTheirEnds) {
  std::set<std::string> distinct;
  for (const auto& line : *lines_)
    if (!line.effective.empty()) distinct.insert(line.effective);
  const Texts dates(distinct.begin(), distinct.end());
  std::size_t found = 0;
  for (std::size_t i = 0; i < dates.size(); i += 40)
    for (std::size_t j = 0; j < dates.size(); j += 40)
      found += ask({{"Rev4", dateOf(dates[i])}, {"Rev4Key", 3}, {"Rev5", dateOf(dates[j])}},
                   [&](const Line& line) {
                     return line.effective > dates[i] && !line.effective.empty() &&
                            line.effective < dates[j];
                   });
  EXPECT_GT(found, 1000U);
  EXPECT_EQ(
      ask({{"Rev4", dateOf(dates[10])}, {"Rev4Key", 3}, {"Rev5", dateOf(dates[12])}},
          [&](const Line& line) { return line.effective == dates[11]; }),
      static_cast<std::size_t>(std::count_if(lines_->begin(), lines_->end(), [&](const Line& line) {
        return line.effective == dates[11];
      })));
}

TEST_F(RealDocuments, AnyCriteriaTogether) {
  std::mt19937 random(655);
  std::size_t found = 0;
  for (int run = 0; run < test::steps(300); ++run) {
    std::map<std::string, Variant> criteria;
    std::vector<Passes> tests;
    if (random() % 3 == 0) {
      const bool controlled = random() % 2 == 0;
      criteria["DocType"] = controlled ? 0 : 1;
      tests.emplace_back([=](const Line& line) { return line.controlled == controlled; });
    }
    const auto& example = (*lines_)[random() % lines_->size()];
    for (const auto& field : kFields) {
      if (random() % 3 != 0 || (example.*field.text).empty()) continue;
      const int code = static_cast<int>(random() % 5);
      // A piece of what the example has, so that something is found now and then.
      std::string value = example.*field.text;
      if (code == 1) {
        const std::size_t from = random() % value.size();
        value = value.substr(from, 1 + random() % 5);
      }
      criteria[field.name] = value;
      criteria[field.code] = code;
      const auto text = field.text;
      tests.emplace_back([=](const Line& line) { return compares(line.*text, code, value); });
    }
    if (random() % 4 == 0 && !example.effective.empty()) {
      const std::string day = example.effective;
      criteria["Rev4"] = dateOf(day);
      criteria["Rev4Key"] = 2;
      tests.emplace_back(
          [=](const Line& line) { return !line.effective.empty() && line.effective < day; });
    }
    found += ask(criteria, [&](const Line& line) {
      return std::all_of(tests.begin(), tests.end(),
                         [&](const Passes& passes) { return passes(line); });
    });
    if (HasFailure()) break;
  }
  EXPECT_GT(found, 100U) << "some of them must find something";
}

// ---- loading and saving ----

std::string usDate(const std::string& iso) {
  if (iso.empty()) return "";
  return std::to_string(std::stoi(iso.substr(5, 2))) + "/" +
         std::to_string(std::stoi(iso.substr(8, 2))) + "/" + iso.substr(0, 4);
}

TEST_F(RealDocuments, LoadDataGivesWhatTheFilesSay) {
  const auto rs = anna_->Document()->Records(0, "", "Select * From Documents Order By ID");
  ASSERT_EQ(rs->RecordCount(), 655);
  for (const auto& line : *lines_) {
    rs->AbsolutePosition(std::stoi(line.key.substr(1)));
    LoadedDocument loaded;
    loaded.from(*anna_->Document(), test::shown(rs->Fields("DocumentID")->Value()));
    const int revision =
        line.revision.empty() ? (line.controlled ? -7 : 0) : std::stoi(line.revision.substr(1));
    EXPECT_EQ(
        loaded.text(),
        fmt::format("{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}", line.title, line.number, line.level,
                    usDate(line.effective), line.group, line.category, line.created,
                    line.participating, line.notes, line.secured ? "secured" : "open",
                    line.location, line.controlled ? "controlled" : "uncontrolled", revision))
        << line.key;
  }
}

// Loads and saves every document unchanged.
void saveAll(clsVeskDocument& document, const Texts& ids, const Ref<Recordset>& rs) {
  for (const auto& id : ids) {
    LoadedDocument d;
    d.from(document, id, rs);
    document.SaveData(id, d.title, d.number, d.user1, d.user2, d.user3, d.user4, d.notes, d.secured,
                      d.controlled, d.location, rs);
  }
}

TEST_F(RealDocuments, LoadingAndSavingEveryDocumentLeavesEveryByte) {
  const test::RawRegister raw(reg_->path());
  const auto before = raw.dump();
  ASSERT_GT(before.size(), 10000U);
  const Texts ids = reg_->rows("Select DocumentID From Documents");
  ASSERT_EQ(ids.size(), 655U);
  saveAll(*anna_->Document(), ids, nullptr);
  EXPECT_TRUE(raw.dump() == before) << "by identifier";
  const auto rs =
      anna_->Document()->Records(0, "", "Select * From Documents Order By DocumentTitle");
  saveAll(*anna_->Document(), ids, rs);
  EXPECT_TRUE(raw.dump() == before) << "through a caller's set";
  EXPECT_EQ(rs->RecordCount(), 655);

  // That the dump would have told: one letter of one title.
  const std::string id = ids[300];
  const Variant title = anna_->Document()->Value(id, "DocumentTitle");
  anna_->Document()->SetValue(id, "DocumentTitle", test::shown(title) + ".");
  EXPECT_FALSE(raw.dump() == before);
  anna_->Document()->SetValue(id, "DocumentTitle", title);
  EXPECT_TRUE(raw.dump() == before);
}

}  // namespace
}  // namespace kv
