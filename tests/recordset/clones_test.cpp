// SPDX-License-Identifier: Apache-2.0
// Sets over the same rows, when one of them requeries: the others take the new rows at their next
// use, and no place among the old rows is used on the new ones.

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <random>

#include "common/convert.h"
#include "support/error_check.h"
#include "support/scale.h"
#include "support/test_register.h"

namespace kv {
namespace {

using Names = std::vector<std::string>;

class Clones : public testing::Test {
 protected:
  // Manuals named M1 to Mn; ManUser1 is their number.
  void fill(int count) {
    reg_.connection()->BeginTrans();
    for (int i = 1; i <= count; ++i)
      reg_.execute(fmt::format(
          "Insert Into Manuals (ManualID, ManualName, ManUser1) Values ('ID{0}', 'M{0}', '{0}')",
          i));
    reg_.connection()->CommitTrans();
  }
  Ref<Recordset> open(const std::string& sql = "Select * From Manuals Order By ManualName") {
    return reg_.open(sql);
  }
  static std::string name(const Ref<Recordset>& rs) {
    return test::shown(rs->Fields("ManualName")->Value());
  }
  static Names namesOf(const Ref<Recordset>& rs) {
    Names out;
    if (rs->RecordCount() > 0) rs->MoveFirst();
    for (; !rs->Eof(); rs->MoveNext()) out.push_back(name(rs));
    return out;
  }
  [[nodiscard]] Names stored() const {
    return reg_.rows("Select ManualName From Manuals Order By ManualName");
  }
  void elsewhere(const std::string& sql) {
    const auto other = reg_.openAnother();
    std::int32_t affected = 0;
    other->Execute(sql, affected);
    other->Close();
  }
  test::TestRegister reg_;
};

TEST_F(Clones, TakeTheNewRowsOfTheirOriginalAndBeginWithTheFirst) {
  fill(3);
  const auto rs = open();
  const auto clone = rs->Clone();
  clone->MoveLast();
  EXPECT_EQ(name(clone), "M3");
  elsewhere("Insert Into Manuals (ManualName) Values ('M0')");
  rs->Requery();
  EXPECT_EQ(name(clone), "M0");
  EXPECT_EQ(clone->RecordCount(), 4);
  EXPECT_EQ(namesOf(clone), (Names{"M0", "M1", "M2", "M3"}));
}

TEST_F(Clones, DeleteTheRowTheyShow) {
  fill(3);
  const auto rs = open();
  const auto clone = rs->Clone();
  clone->MoveLast();
  EXPECT_EQ(name(clone), "M3");
  elsewhere("Delete * From Manuals Where ManualName = 'M1'");
  rs->Requery();
  EXPECT_EQ(name(clone), "M2");
  clone->Delete();
  EXPECT_EQ(stored(), Names{"M3"});
}

TEST_F(Clones, DeleteNoRowByAPlaceOfTheOldRows) {
  fill(3);
  const auto rs = open();
  const auto clone = rs->Clone();
  clone->MoveNext();  // to M2, which is the second also of the new rows, where M3 has left
  elsewhere("Insert Into Manuals (ManualName) Values ('M0')");
  rs->Requery();
  clone->Delete();
  EXPECT_EQ(stored(), (Names{"M1", "M2", "M3"})) << "the first of the new rows goes";
}

TEST_F(Clones, TellTheirOriginalOfARequeryToo) {
  fill(3);
  const auto rs = open();
  const auto clone = rs->Clone();
  rs->MoveLast();
  elsewhere("Delete * From Manuals Where ManualName <> 'M2'");
  clone->Requery();
  EXPECT_EQ(name(rs), "M2");
  EXPECT_EQ(rs->RecordCount(), 1);
}

// Whatever member is the first that is used: the clone does what a new clone does.
TEST_F(Clones, DoWhateverTheyAreAskedOnTheNewRows) {
  fill(300);
  struct Member {
    const char* name;
    std::function<std::string(Recordset&)> use;
  };
  const auto field = [](Recordset& r) { return r.Fields("ManualName"); };
  const Variant bookmark = 2 * 4294967296.0 + 1;
  const Member members[] = {
      {"Eof", [](Recordset& r) { return std::to_string(static_cast<int>(r.Eof())); }},
      {"Bof", [](Recordset& r) { return std::to_string(static_cast<int>(r.Bof())); }},
      {"RecordCount", [](Recordset& r) { return std::to_string(r.RecordCount()); }},
      {"AbsolutePosition", [](Recordset& r) { return std::to_string(r.AbsolutePosition()); }},
      {"Bookmark", [](Recordset& r) { return test::shown(r.Bookmark()); }},
      {"Value", [&](Recordset& r) { return test::shown(field(r)->Value()); }},
      {"Text", [&](Recordset& r) { return std::string(field(r)->Text()); }},
      {"IsNull",
       [](Recordset& r) {
         return std::to_string(static_cast<int>(r.Fields("ManUser1")->IsNull()));
       }},
      {"OriginalValue", [&](Recordset& r) { return test::shown(field(r)->OriginalValue()); }},
      {"ActualSize", [&](Recordset& r) { return std::to_string(field(r)->ActualSize()); }},
      {"MoveFirst", [](Recordset& r) { return r.MoveFirst(), std::string(); }},
      {"MoveLast", [](Recordset& r) { return r.MoveLast(), std::string(); }},
      {"MoveNext", [](Recordset& r) { return r.MoveNext(), std::string(); }},
      {"MovePrevious", [](Recordset& r) { return r.MovePrevious(), std::string(); }},
      {"Move 0", [](Recordset& r) { return r.Move(0), std::string(); }},
      {"Move 1", [](Recordset& r) { return r.Move(1), std::string(); }},
      {"Move -1", [](Recordset& r) { return r.Move(-1), std::string(); }},
      {"Find", [](Recordset& r) { return r.Find("ManUser1 = '2'"), std::string(); }},
      {"go to a bookmark", [&](Recordset& r) { return r.Bookmark(bookmark), std::string(); }},
      {"go to place 2", [](Recordset& r) { return r.AbsolutePosition(2), std::string(); }},
      {"GetRows",
       [](Recordset& r) { return test::shown(r.GetRows(2, {}, {"ManualName"})[0].back()); }},
      {"Filter", [](Recordset& r) { return r.Filter("ManUser1 = '2'"), std::string(); }},
      {"Sort", [](Recordset& r) { return r.Sort("ManUser1 DESC"), std::string(); }},
      {"Clone", [&](Recordset& r) { return test::shown(r.Clone()->Fields(2)->Value()); }},
      {"assign", [&](Recordset& r) { return field(r)->Value("x"), r.Update(), std::string(); }},
      {"AddNew", [](Recordset& r) { return r.AddNew(), r.Update(), std::string(); }},
      {"Update", [](Recordset& r) { return r.Update(), std::string(); }},
      {"Delete", [](Recordset& r) { return r.Delete(), std::string(); }},
      {"DeleteAll", [](Recordset& r) { return r.DeleteAll(), std::string(); }},
  };
  const auto outcome = [&](const Member& member, const Ref<Recordset>& rs) {
    std::string said;
    const auto number = test::numberOf([&] { said = member.use(*rs); });
    said += fmt::format(" {} {} {} {} {}", number, rs->Bof(), rs->Eof(), rs->AbsolutePosition(),
                        rs->RecordCount());
    if (!rs->Eof() && !rs->Bof()) said += " " + test::descriptionOf([&] { (void)name(rs); });
    return said;
  };
  for (const auto& member : members) {
    Names outcomes;
    for (const bool fresh : {true, false}) {
      reg_.connection()->BeginTrans();
      const auto rs = open();
      const auto clone = rs->Clone();
      clone->Move(299);
      (void)name(clone);
      reg_.execute("Delete * From Manuals Where ManUser1 > '2'");
      reg_.execute("Insert Into Manuals (ManualName, ManUser1) Values ('M0', Null)");
      rs->Requery();
      outcomes.push_back(outcome(member, fresh ? rs->Clone() : clone));
      reg_.connection()->RollbackTrans();
    }
    EXPECT_EQ(outcomes[1], outcomes[0]) << member.name;
  }
}

TEST_F(Clones, KeepAFilterAndAnOrderOfTheirOwn) {
  fill(4);
  const auto rs = open();
  const auto clone = rs->Clone();
  clone->Filter("ManUser1 <> '2'");
  clone->Sort("ManUser1 DESC");
  clone->MoveLast();
  elsewhere("Insert Into Manuals (ManualName, ManUser1) Values ('M9', '9')");
  elsewhere("Delete * From Manuals Where ManualName = 'M3'");
  rs->Requery();
  EXPECT_EQ(clone->RecordCount(), 3);
  EXPECT_EQ(name(clone), "M9");
  EXPECT_EQ(namesOf(clone), (Names{"M9", "M4", "M1"}));
  EXPECT_EQ(namesOf(rs), (Names{"M1", "M2", "M4", "M9"}));
}

TEST_F(Clones, StoreAPendingEditInTheRowItIsOf) {
  fill(3);
  const auto rs = open();
  const auto clone = rs->Clone();
  clone->MoveNext();
  clone->Fields("ManUser2")->Value("mine");
  elsewhere("Delete * From Manuals Where ManualName = 'M1'");
  rs->Requery();
  EXPECT_EQ(clone->EditMode(), kEditInProgress);
  EXPECT_EQ(name(clone), "M2");
  EXPECT_EQ(clone->AbsolutePosition(), 1) << "where its row is now";
  clone->MoveNext();
  EXPECT_EQ(name(clone), "M3");
  EXPECT_EQ(reg_.rows("Select ManualName, ManUser2 From Manuals Order By ID"),
            (Names{"M2|mine", "M3|~"}));
}

TEST_F(Clones, StoreAPendingEditOfARowThatIsNoMoreInTheSet) {
  fill(3);
  const auto rs = open("Select ID, ManualName, ManUser2 From Manuals Where ManUser1 <> '9'");
  const auto clone = rs->Clone();
  clone->MoveNext();
  clone->Fields("ManUser2")->Value("mine");
  elsewhere("Update Manuals Set ManUser1 = '9' Where ManualName = 'M2'");
  rs->Requery();
  EXPECT_EQ(name(clone), "M2");
  clone->Update();
  EXPECT_EQ(reg_.rows("Select ManualName, ManUser2 From Manuals Order By ID"),
            (Names{"M1|~", "M2|mine", "M3|~"}));
  EXPECT_TRUE(clone->Bof()) << "no row of the set is current";
  EXPECT_RAISES(3021, (void)name(clone));
  clone->MoveNext();
  EXPECT_EQ(name(clone), "M1");
}

TEST_F(Clones, StoreAPendingAdditionBehindTheNewRows) {
  fill(3);
  const auto rs = open();
  const auto clone = rs->Clone();
  clone->MoveLast();
  clone->AddNew();
  clone->Fields("ManualName")->Value("new");
  elsewhere("Delete * From Manuals Where ManualName = 'M1'");
  rs->Requery();
  clone->Update();
  EXPECT_EQ(name(clone), "new");
  EXPECT_EQ(namesOf(rs), (Names{"M2", "M3", "new"}));
  clone->MoveLast();
  clone->AddNew();
  rs->Requery();
  clone->CancelUpdate();
  EXPECT_EQ(name(clone), "M2") << "the row left is none of the new ones";
}

TEST_F(Clones, RefuseBookmarksOfTheOldRows) {
  fill(3);
  const auto rs = open();
  const auto clone = rs->Clone();
  clone->MoveLast();
  const Variant here = clone->Bookmark();
  rs->Requery();
  EXPECT_RAISES(3001, clone->Bookmark(here));
  EXPECT_RAISES(3001, clone->Move(0, here));
  EXPECT_EQ(name(clone), "M1");
}

TEST_F(Clones, OfKeylessRowsTakeTheNewRowsToo) {
  fill(3);
  const auto rs = open("Select Distinct ManualName From Manuals");
  const auto clone = rs->Clone();
  clone->MoveLast();
  EXPECT_EQ(name(clone), "M3");
  elsewhere("Delete * From Manuals Where ManualName <> 'M2'");
  rs->Requery();
  EXPECT_EQ(clone->Fields("ManualName")->Text(), "M2");
  clone->MoveNext();
  EXPECT_TRUE(clone->Eof());
}

// Several sets over the same rows that do anything in any order, beside somebody else who adds and
// deletes: nothing but errors of record sets, and what a set shows is what it deletes and edits.
TEST_F(Clones, DoNothingElseInAnyOrder) {
  std::mt19937 random(1899);
  const auto any = [&](int count) {
    return static_cast<std::int32_t>(random() % static_cast<unsigned>(count));
  };
  fill(230);
  reg_.connection()->BeginTrans();
  int open = 0;  // transactions in that one
  std::vector<Ref<Recordset>> sets = {this->open("Select * From Manuals Order By ID")};
  for (int i = 0; i < 3; ++i) sets.push_back(sets[0]->Clone());
  const std::function<void(Recordset&)> uses[] = {
      [](Recordset& r) { r.MoveFirst(); },
      [](Recordset& r) { r.MoveLast(); },
      [](Recordset& r) { r.MoveNext(); },
      [](Recordset& r) { r.MovePrevious(); },
      [&](Recordset& r) { r.Move(any(400) - 200); },
      [&](Recordset& r) { r.Find(fmt::format("ManUser1 > '{}'", any(10))); },
      [&](Recordset& r) { r.Bookmark(any(9) * 4294967296.0 + any(250)); },
      [&](Recordset& r) { r.AbsolutePosition(any(250)); },
      [](Recordset& r) { r.Requery(); },
      [&](Recordset& r) { r.Filter(any(2) == 0 ? "" : fmt::format("ID > {}", any(300))); },
      [&](Recordset& r) { r.Sort(any(2) == 0 ? "" : "ManUser1, ID DESC"); },
      [&](Recordset& r) { (void)r.GetRows(any(5)); },
      [&](Recordset& r) { r.Fields("ManUser2")->Value(test::shown(r.Fields("ID")->Value())); },
      [&](Recordset& r) {
        r.AddNew();
        r.Fields("ManUser2")->Value(test::shown(r.Fields("ID")->Value()));
      },
      [](Recordset& r) { r.Update(); },
      [](Recordset& r) { r.CancelUpdate(); },
      [&](Recordset& r) {
        const std::string id = test::shown(r.Fields("ID")->Value());
        r.Delete();
        EXPECT_EQ(reg_.value("Select Count(*) From Manuals Where ID = " + id), "0");
      },
      [&](Recordset& r) { sets[1] = r.Clone(); },
      [&](Recordset&) {
        reg_.execute("Insert Into Manuals (ManUser1) Values ('" + std::to_string(any(20)) + "')");
      },
      [&](Recordset&) {
        reg_.execute("Delete * From Manuals Where ID = " + std::to_string(any(400)));
      },
      [&](Recordset&) {
        reg_.connection()->BeginTrans();
        ++open;
      },
      [&](Recordset&) {
        if (open == 0) return;
        reg_.connection()->RollbackTrans();
        --open;
      },
  };
  int done = 0;
  const int steps = test::steps(3000);
  for (int i = 0; i < steps && !HasFailure(); ++i) {
    SCOPED_TRACE(fmt::format("step {}", i));
    auto& set = *sets[static_cast<std::size_t>(any(4))];
    try {
      uses[static_cast<std::size_t>(any(static_cast<int>(std::size(uses))))](set);
      ++done;
    } catch (const Error&) {  // something that may not be done there
    } catch (const std::exception& e) {
      ADD_FAILURE() << "no error of a record set: " << e.what();
    }
  }
  EXPECT_GT(done, steps / 3);
  // Every edit and addition writes a row's number into it, so no row has another one's.
  for (const auto& row : reg_.rows("Select ID, ManUser2 From Manuals Where ManUser2 Is Not Null")) {
    const auto bar = row.find('|');
    EXPECT_EQ(row.substr(0, bar), row.substr(bar + 1));
  }
}

}  // namespace
}  // namespace kv
