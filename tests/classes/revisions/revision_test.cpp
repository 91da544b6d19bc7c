// SPDX-License-Identifier: Apache-2.0
// The record operations of clsVeskRevision: what they run, give back, store and raise.
#include "classes/revisions/revision.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "classes/revisions/revision_session.h"
#include "common/clock.h"

namespace kv {
namespace {

namespace fs = std::filesystem;
using test::at;
using test::LoadedRevision;
using test::Texts;

class Revision : public test::RevisionSession<test::SessionTest> {
 protected:
  Revision() { logIn("Bert"); }  // no right is tested
};

// ---- set-up ----

TEST_F(Revision, NamesItsTablesToItsDataServer) {
  clsVeskRevision own;
  ASSERT_TRUE(own.DataServer()) << "one of its own from the beginning";
  EXPECT_TRUE(own.OpenConnection(reg_.path()).isEmpty());
  EXPECT_TRUE(own.Login().isEmpty());
  const auto server = own.DataServer();
  EXPECT_NO_THROW((void)server->Config()->Value("RevUser1"));
  EXPECT_RAISES(3265, (void)server->Config()->Value("DatabaseVersion"));
  EXPECT_EQ(server->groupsTable(), "VeskGroups");
  EXPECT_EQ(server->profilesTable(), "VeskProfiles");
  EXPECT_RAISES(kObjectNotSet, (void)server->Queries()) << "there are no saved queries of these";
  server->Close();
}

TEST_F(Revision, DataServerAndRootCanBeReplaced) {
  clsVeskRevision own;
  own.DataServer(revision().DataServer());
  EXPECT_EQ(own.DataServer(), revision().DataServer());
  own.oVesk(revision().oVesk());
  EXPECT_EQ(own.oVesk().get(), &*vesk_);
  EXPECT_EQ(own.GetRevRS(1)->RecordCount(), 0);
  own.oVesk(nullptr);
}

TEST_F(Revision, WithoutAConnectionThereIsNoObject) {
  clsVeskRevision own;
  LoadedRevision loaded;
  EXPECT_RAISES(kObjectNotSet, own.Add("D1", "", "", "", "", "", true, ""));
  EXPECT_RAISES(kObjectNotSet, own.SaveData(1, "", "", "", "", ""));
  EXPECT_RAISES(kObjectNotSet, (void)loaded.from(own, 1));
  EXPECT_RAISES(kObjectNotSet, (void)own.GetRevRS(1));
  EXPECT_RAISES(kObjectNotSet, (void)own.GetRevApprovalList(1));
  EXPECT_RAISES(kObjectNotSet, (void)own.approvals(1));
  EXPECT_RAISES(kObjectNotSet, (void)own.GetRevFileName("1"));
  EXPECT_RAISES(kObjectNotSet, own.SetUsersRevisionTo("1", "1"));
  EXPECT_FALSE(own.DeleteRevision(1)) << "which never raises";
}

// ---- adding ----

std::int32_t add(clsVeskRevision& revision, bool current) {
  return revision.Add("D1", "B", "one", "two", "change", "shelf", current, "User7", "3/9/2001");
}

TEST_F(Revision, AddRunsTheseStatements) {
  const StoppedClock clock(at(2001, 2, 3, 14, 5, 9));
  EXPECT_EQ(statementsOf([&] { add(revision(), true); }),
            (Texts{"Select * from Revisions Where RevisionID = -1",
                   "Select * From Revisions Where RevisionLevel = 'User7020301140509'"}));
}

TEST_F(Revision, AddStoresTheFieldsAndReturnsTheNumber) {
  const std::int32_t current = add(revision(), true);
  const std::int32_t prepared = add(revision(), false);
  EXPECT_NE(current, prepared);
  EXPECT_EQ(row(current), "D1|B|one|two|change|shelf|3/9/2001|User7|0|1");
  EXPECT_EQ(row(prepared), "D1|B|one|two|change|shelf|3/9/2001|User7|0|2");
  EXPECT_EQ(reg_.value("Select Count(*) From Revisions"), "2") << "and no other row";
}

TEST_F(Revision, AddStoresEmptyTextAsNull) {
  for (const bool current : {true, false}) {
    const std::int32_t id = revision().Add("", "", "", "", "", "", current, "");
    EXPECT_EQ(row(id), std::string("~|~|~|~|~|~|~|~|0|") + (current ? "1" : "2"));
  }
  const std::int32_t id = revision().Add("D1", "B", "", "x", "", "", false, "User7", "");
  EXPECT_EQ(row(id), "D1|B|~|x|~|~|~|User7|0|2");
}

TEST_F(Revision, AddNeitherLooksForTheDocumentNorChangesIt) {
  reg_.execute("Insert Into Documents (DocumentID, CurrentRevID) Values ('D1', 0)");
  add(revision(), true);
  EXPECT_EQ(reg_.value("Select DocumentID, CurrentRevID, RevisionLevel, EffectiveDate From "
                       "Documents"),
            "D1|0|~|~");
  EXPECT_NO_THROW(revision().Add("no such document", "B", "", "", "", "", true, "User7"));
}

TEST_F(Revision, TwoWithinASecondAreTwo) {
  const StoppedClock clock(at(2001, 2, 3, 14, 5, 9));
  const std::int32_t first = add(revision(), true);
  const std::int32_t second = add(revision(), true);
  EXPECT_NE(first, second);
  EXPECT_EQ(row(first), row(second));
}

TEST_F(Revision, ALevelThatLooksLikeTheTemporaryKeyIsLeftAlone) {
  const StoppedClock clock(at(2001, 2, 3, 14, 5, 9));
  const std::int32_t old = addRevision(0, "RevisionLevel = 'user7020301140509'");
  const std::string before = row(old);
  const std::int32_t id = add(revision(), true);
  EXPECT_NE(id, old);
  EXPECT_EQ(row(old), before);
  EXPECT_EQ(row(id), "D1|B|one|two|change|shelf|3/9/2001|User7|0|1");
}

// ---- saving ----

// The current folder, until the end of the scope.
class InFolder {
 public:
  explicit InFolder(const fs::path& folder) : before_(fs::current_path()) {
    fs::current_path(folder);
  }
  ~InFolder() { fs::current_path(before_); }
  InFolder(const InFolder&) = delete;
  InFolder& operator=(const InFolder&) = delete;
  InFolder(InFolder&&) = delete;
  InFolder& operator=(InFolder&&) = delete;

 private:
  fs::path before_;
};

TEST_F(Revision, SaveDataWritesTheFieldsAndNothingElse) {
  const std::string file = reg_.folder().file("file.txt");
  test::write(file, "");
  const std::int32_t id = addRevision(3, "ResponsibleID = 'User7', RoutingStatus = 2");
  const std::int32_t other = addRevision(3);
  const std::string untouched = row(other);
  EXPECT_EQ(
      statementsOf([&] { revision().SaveData(id, "C", "1", "2", "why", file, "12/31/2001"); }),
      Texts{"Select * from Revisions Where RevisionID = " + std::to_string(id)});
  EXPECT_EQ(row(id), "D1|C|1|2|why|" + file + "|12/31/2001|User7|2|3");
  revision().SaveData(id, "", "", "", "", "");
  EXPECT_EQ(row(id), "D1|~|~|~|~|~|~|User7|2|3") << "empty text is stored as Null";
  EXPECT_EQ(row(other), untouched);
}

TEST_F(Revision, ACurrentRevisionAlwaysHasAnEffectiveDate) {
  const StoppedClock clock(at(2001, 2, 3, 14, 5, 9));
  struct Case {
    int status;
    const char* before;
    const char* given;
    const char* after;
  };
  for (const Case& c :
       {Case{1, "Null", "", "2/3/2001"}, Case{1, "#1/1/2000#", "", "2/3/2001"},
        Case{1, "Null", "3/9/2001", "3/9/2001"}, Case{1, "#1/1/2000#", "2001-03-09", "3/9/2001"},
        Case{0, "#1/1/2000#", "", "~"}, Case{2, "Null", "", "~"}, Case{3, "#1/1/2000#", "", "~"},
        Case{4, "Null", "3/9/2001", "3/9/2001"}, Case{5, "#1/1/2000#", "", "~"},
        Case{7, "#1/1/2000#", "", "~"}}) {
    const std::int32_t id = addRevision(c.status, std::string("EffectiveDate = ") + c.before);
    revision().SaveData(id, "B", "", "", "", "", c.given);
    EXPECT_EQ(
        reg_.value("Select EffectiveDate From Revisions Where RevisionID = " + std::to_string(id)),
        c.after)
        << c.status << " " << c.before << " " << c.given;
  }
}

TEST_F(Revision, ARevisionWithoutAStatusIsNotCurrent) {
  const std::int32_t id = addRevision(0, "RevisionStatus = Null");
  revision().SaveData(id, "C", "", "", "", "");
  EXPECT_EQ(row(id), "D1|C|~|~|~|~|~|~|0|~");
}

TEST_F(Revision, SavingARevisionThatDoesNotExistDoesNothing) {
  addRevision(1);
  const auto before = everything();
  for (const std::int32_t id : {0, -1, 999, 2147483647, -2147483647 - 1}) {
    EXPECT_EQ(statementsOf([&] { revision().SaveData(id, "C", "", "", "", ""); }),
              Texts{"Select * from Revisions Where RevisionID = " + std::to_string(id)});
  }
  EXPECT_EQ(everything(), before);
}

struct FileCase {
  std::string location;
  bool isFile;
};

TEST_F(Revision, TheLocationMustBeARegularFile) {
  const test::TempFolder folder;
  test::write(folder.file("plain.txt"), "x");
  test::write(folder.file("O'Brien's.txt"), "x");
  test::write(folder.file("gr\xC3\xBC\xC3\x9F"
                          "e.txt"),
              "x");
  test::write(folder.file(" blank "), "x");
  fs::create_directory(folder.path() / "folder");
  test::write(folder.file("folder/inside.txt"), "x");
  fs::create_symlink("plain.txt", folder.path() / "link");
  fs::create_symlink("nowhere", folder.path() / "broken");
  ASSERT_EQ(mkfifo(folder.file("pipe").c_str(), 0600), 0);
  const InFolder current(folder.path());
  const std::int32_t id = addRevision(2);
  const auto before = everything();
  const std::string here = folder.path().string();
  for (const FileCase& c : {FileCase{here + "/plain.txt", true},
                            {"plain.txt", true},
                            {"./folder/../plain.txt", true},
                            {"folder/inside.txt", true},
                            {"O'Brien's.txt", true},
                            {"gr\xC3\xBC\xC3\x9F"
                             "e.txt",
                             true},
                            {" blank ", true},
                            {"link", true},
                            {"", true},
                            {"   ", true},
                            {"missing.txt", false},
                            {"plain.txt ", false},
                            {" plain.txt", false},
                            {"\t", false},
                            {"blank", false},
                            {"plain", false},
                            {"*.txt", false},
                            {"PLAIN.TXT", false},
                            {"folder", false},
                            {".", false},
                            {here, false},
                            {"broken", false},
                            {"pipe", false},
                            {"/dev/null", false},
                            {"plain.txt/", false},
                            {std::string("plain.txt\0", 10), false},
                            {"caf\xE9", false},
                            {std::string(10000, 'x'), false}}) {
    const std::string shortName = c.location.substr(0, 40);
    if (c.isFile) {
      EXPECT_NO_THROW(revision().SaveData(id, "B", "", "", "", c.location)) << shortName;
      EXPECT_EQ(reg_.value("Select Location From Revisions"),
                c.location.empty() ? "~" : c.location);
      revision().SaveData(id, "B", "", "", "", "");
      ASSERT_EQ(everything(), before);
      continue;
    }
    const auto statements = statementsOf([&] {
      const auto error =
          test::errorOf([&] { revision().SaveData(id, "new", "", "", "", c.location); });
      ASSERT_TRUE(error) << shortName;
      EXPECT_EQ(error->number(), 55666) << "a plain number";
      EXPECT_EQ(error->source(), "Revision.SaveData");
      EXPECT_EQ(error->description(),
                "No File Found at present location.  To save this revision data a valide file "
                "location is required.");
    });
    EXPECT_EQ(statements, Texts{});
    ASSERT_EQ(everything(), before) << shortName;
  }
}

TEST_F(Revision, TheFileIsLookedForBeforeTheRevision) {
  EXPECT_RAISES(55666, revision().SaveData(999, "", "", "", "", "missing.txt"));
}

TEST_F(Revision, RefusedValuesChangeNothing) {
  const std::int32_t id = addRevision(1, "RevisionLevel = 'B', EffectiveDate = #3/9/2001#");
  const auto before = everything();
  EXPECT_RAISES(kWrongType, revision().SaveData(id, "C", "", "", "", "", "soon"));
  EXPECT_RAISES(kWrongType, revision().SaveData(id, std::string(10000, 'C'), "", "", "", ""));
  EXPECT_RAISES(kWrongType, revision().SaveData(id, "C", std::string(10000, '1'), "", "", ""));
  EXPECT_RAISES(kWrongType, revision().Add("D1", "B", "", "", "", "", true, "User7", "soon"));
  EXPECT_RAISES(kWrongType,
                revision().Add("D1", std::string(10000, 'B'), "", "", "", "", true, "User7"));
  EXPECT_RAISES(kWrongType,
                revision().Add(std::string(10000, 'D'), "B", "", "", "", "", true, "User7"));
  EXPECT_RAISES(kWrongType,
                revision().Add("D1", "B", "", "", "", "", true, std::string(10000, 'U')));
  EXPECT_EQ(everything(), before);
}

TEST_F(Revision, FieldValuesAreStoredWhateverTheyHold) {
  const std::string hostile = "O'Brien; Delete * From Revisions -- #1# {x} \"y\" [z] ?";
  const std::int32_t id =
      revision().Add(hostile.substr(0, 50), hostile.substr(0, 50), hostile, hostile,
                     std::string(10000, '\''), hostile, false, "User7");
  LoadedRevision loaded;
  ASSERT_TRUE(loaded.from(revision(), id));
  EXPECT_EQ(loaded.document, hostile.substr(0, 50));
  EXPECT_EQ(loaded.level, hostile.substr(0, 50));
  EXPECT_EQ(loaded.user2, hostile);
  EXPECT_EQ(loaded.change, std::string(10000, '\''));
  EXPECT_EQ(loaded.location, hostile);
  revision().SaveData(id, "'", "'", "''", "'", "");
  EXPECT_EQ(row(id), hostile.substr(0, 50) + "|'|'|''|'|~|~|User7|0|2");
}

TEST_F(Revision, AResponsibleUserWhoWouldChangeTheStatementIsRefused) {
  const auto before = everything();
  for (const char* user : {"O'Brien", "'", "x' or 'a'='a"})
    EXPECT_RAISES(kSyntax, revision().Add("D1", "B", "", "", "", "", true, user)) << user;
  EXPECT_EQ(everything(), before);
}

TEST_F(Revision, IdentifiersAreGivenAsTheyStandInStatements) {
  const StoppedClock clock(at(2001, 2, 3, 14, 5, 9));
  std::int32_t id = 0;
  EXPECT_EQ(
      statementsOf([&] { id = revision().Add("Plan''6", "B", "", "", "", "", false, "O''Brien"); }),
      (Texts{"Select * from Revisions Where RevisionID = -1",
             "Select * From Revisions Where RevisionLevel = 'O''Brien020301140509'"}));
  EXPECT_EQ(row(id), "Plan'6|B|~|~|~|~|~|O'Brien|0|2");
}

// ---- loading ----

TEST_F(Revision, LoadRevisionDataReadsEveryField) {
  const std::int32_t id =
      addRevision(4,
                  "RevisionLevel = 'B', RevUser1 = 'one', RevUser2 = 'two', ChangeDescription = "
                  "'why', Location = 'shelf', EffectiveDate = #3/9/2001#, RoutingStatus = 5");
  LoadedRevision loaded;
  bool found = false;
  EXPECT_EQ(statementsOf([&] { found = loaded.from(revision(), id); }),
            (Texts{"Select * from Revisions Where RevisionID = " + std::to_string(id),
                   "Select * from ApprovalRouting Where RevID = " + std::to_string(id) +
                       " Order By ListOrder"}));
  EXPECT_TRUE(found);
  EXPECT_EQ(loaded.text(), "D1|5|4|B|one|two|3/9/2001|why|shelf|Approved");
  ASSERT_TRUE(loaded.approvals);
  EXPECT_EQ(loaded.approvals->State(), kStateOpen);
}

TEST_F(Revision, NullLoadsAsNothing) {
  reg_.execute("Insert Into Revisions (RoutingStatus, RevisionStatus) Values (0, 0)");
  LoadedRevision loaded;
  EXPECT_TRUE(loaded.from(revision(), 1));
  EXPECT_EQ(loaded.text(),
            "|0|0||||||"
            "|Out of date revision");
}

TEST_F(Revision, ARevisionThatDoesNotExistLeavesEverythingAsItWas) {
  addRevision(1);
  for (const std::int32_t id : {0, -1, 999}) {
    LoadedRevision loaded;
    EXPECT_EQ(statementsOf([&] { EXPECT_FALSE(loaded.from(revision(), id)); }),
              Texts{"Select * from Revisions Where RevisionID = " + std::to_string(id)});
    EXPECT_EQ(loaded.text(), "?|-7|-7|?|?|?|?|?|?|?");
    EXPECT_FALSE(loaded.approvals);
  }
}

TEST_F(Revision, EveryStatusHasItsText) {
  struct Case {
    int status;
    const char* text;
  };
  for (const Case& c : {Case{0, "Out of date revision"}, Case{1, "Current Revision"},
                        Case{2, "Being Revised by Anna"}, Case{3, "Awaiting Approval"},
                        Case{4, "Approved"}, Case{5, "Rejected"}, Case{6, "?"}, Case{7, "?"},
                        Case{-1, "?"}, Case{32767, "?"}, Case{-32768, "?"}}) {
    const std::int32_t id = addRevision(c.status, "ResponsibleID = 'User1'");
    LoadedRevision loaded;
    EXPECT_TRUE(loaded.from(revision(), id));
    EXPECT_EQ(loaded.status, c.text) << c.status;
    EXPECT_EQ(loaded.state, c.status);
  }
}

TEST_F(Revision, WhoRevisesIsNamedByTheProfiles) {
  reg_.execute("Update VeskProfiles Set UserName = 'Anna O''Brien' Where UserID = 'User1'");
  const std::int32_t id = addRevision(2, "ResponsibleID = 'User1'");
  LoadedRevision loaded;
  EXPECT_EQ(statementsOf([&] { loaded.from(revision(), id); }).back(),
            "Select UserName From VeskProfiles Where UserID = 'User1'");
  EXPECT_EQ(loaded.status, "Being Revised by Anna O'Brien");
  for (const char* nobody : {"'TBD'", "Null", "''"}) {
    reg_.execute(std::string("Update Revisions Set ResponsibleID = ") + nobody);
    EXPECT_TRUE(loaded.from(revision(), id));
    EXPECT_EQ(loaded.status, "Being Revised by ");
  }
  reg_.execute("Update Revisions Set ResponsibleID = 'O''Brien'");
  reg_.execute("Update VeskProfiles Set UserID = 'O''Brien' Where UserID = 'User1'");
  EXPECT_EQ(statementsOf([&] { loaded.from(revision(), id); }).back(),
            "Select UserName From VeskProfiles Where UserID = 'O''Brien'");
  EXPECT_EQ(loaded.status, "Being Revised by Anna O'Brien");
}

TEST_F(Revision, TheApproverWhoseTurnItIsIsNamed) {
  reg_.addUser(3, "Cleo", "");
  const std::int32_t other = addRevision(3);
  addApprover(other, "User3", 1);
  const std::int32_t id = addRevision(3);
  addApprover(id, "User3", 30);
  addApprover(id, "User1", 10);
  addApprover(id, "User2", 20);
  for (const auto& [turn, name] : {std::pair{1, "Anna"}, {2, "Bert"}, {3, "Cleo"}}) {
    reg_.execute(
        fmt::format("Update Revisions Set RoutingStatus = {} Where RevisionID = {}", turn, id));
    LoadedRevision loaded;
    EXPECT_EQ(
        statementsOf([&] { EXPECT_TRUE(loaded.from(revision(), id)); }),
        (Texts{"Select * from Revisions Where RevisionID = " + std::to_string(id),
               "Select * from ApprovalRouting Where RevID = " + std::to_string(id) +
                   " Order By ListOrder",
               fmt::format("Select UserName From VeskProfiles Where UserID = 'User{}'", turn)}));
    EXPECT_EQ(loaded.status, std::string("Awaiting Approval from ") + name);
    EXPECT_EQ(loaded.routing, turn);
    EXPECT_EQ(loaded.approvals->RecordCount(), 3);
    EXPECT_EQ(loaded.approvals->AbsolutePosition(), turn) << "and the list stands there";
  }
}

TEST_F(Revision, ATurnThatIsNobodysRaises) {
  const std::int32_t id = addRevision(3);
  addApprover(id, "User1", 1);
  for (const int turn : {0, -1, 2, 3}) {
    reg_.execute(fmt::format("Update Revisions Set RoutingStatus = {}", turn));
    LoadedRevision loaded;
    EXPECT_RAISES(kNoCurrentRow, loaded.from(revision(), id)) << turn;
    EXPECT_EQ(loaded.status, "?");
  }
  addApprover(id, "nobody", 2);
  reg_.execute("Update Revisions Set RoutingStatus = 2");
  LoadedRevision loaded;
  EXPECT_TRUE(loaded.from(revision(), id));
  EXPECT_EQ(loaded.status, "Awaiting Approval from ") << "an approver without a profile";
}

TEST_F(Revision, TheApprovalListStaysAtItsFirstRowForOtherStatuses) {
  for (const int status : {0, 1, 2, 4, 5, 7}) {
    const std::int32_t id = addRevision(status, "RoutingStatus = 2");
    addApprover(id, "User2", 2);
    addApprover(id, "User1", 1);
    LoadedRevision loaded;
    EXPECT_TRUE(loaded.from(revision(), id));
    EXPECT_EQ(loaded.approvals->AbsolutePosition(), 1);
    EXPECT_EQ(loaded.approvals->Fields("UserID")->Value(), Variant("User1"));
  }
}

TEST_F(Revision, AStatusThatIsNullCannotBeRead) {
  for (const char* column : {"RoutingStatus", "RevisionStatus"}) {
    const std::int32_t id = addRevision(1, std::string(column) + " = Null");
    LoadedRevision loaded;
    EXPECT_RAISES(kInvalidNull, loaded.from(revision(), id)) << column;
  }
}

// ---- sets and single fields ----

TEST_F(Revision, GetRevRSIsTheSetOfOneRow) {
  const std::int32_t id = addRevision(1);
  addRevision(2);
  Ref<Recordset> rs;
  EXPECT_EQ(statementsOf([&] { rs = revision().GetRevRS(id); }),
            Texts{"Select * From Revisions Where RevisionID = " + std::to_string(id)});
  EXPECT_EQ(rs->RecordCount(), 1);
  EXPECT_EQ(rs->CursorType(), kKeyset);
  EXPECT_EQ(rs->LockType(), kOptimistic);
  rs->Fields("RevisionLevel")->Value("changed");
  rs->Update();
  EXPECT_EQ(row(id).substr(0, 10), "D1|changed");
  EXPECT_EQ(revision().GetRevRS(999)->RecordCount(), 0);
  EXPECT_EQ(revision().GetRevRS(-1)->RecordCount(), 0);
}

TEST_F(Revision, TheApprovalListIsInItsOrder) {
  const std::int32_t id = addRevision(3);
  addApprover(id, "User3", 3);
  addApprover(id, "User1", 1);
  addApprover(999, "User9", 1);
  addApprover(id, "User2", 2);
  const Texts statement = {"Select * from ApprovalRouting Where RevID = " + std::to_string(id) +
                           " Order By ListOrder"};
  Ref<Recordset> list;
  Ref<Recordset> same;
  EXPECT_EQ(statementsOf([&] { list = revision().GetRevApprovalList(id); }), statement);
  EXPECT_EQ(statementsOf([&] { same = revision().approvals(id); }), statement);
  const Texts users = {"User1", "User2", "User3"};
  for (const auto& rs : {list, same}) {
    Texts found;
    for (; !rs->Eof(); rs->MoveNext()) found.push_back(test::shown(rs->Fields("UserID")->Value()));
    EXPECT_EQ(found, users);
  }
  list->MoveFirst();
  list->Fields("Notes")->Value("seen");
  list->Update();
  EXPECT_EQ(reg_.value("Select Notes From ApprovalRouting Where UserID = 'User1'"), "seen");
  EXPECT_EQ(revision().approvals(12345)->RecordCount(), 0);
}

TEST_F(Revision, GetRevFileNameGivesTheLocation) {
  const std::int32_t id = addRevision(1, "Location = 'shelf'");
  const std::string number = std::to_string(id);
  EXPECT_EQ(statementsOf([&] { EXPECT_EQ(revision().GetRevFileName(number), Variant("shelf")); }),
            Texts{"Select Location from Revisions Where RevisionID = " + number});
  EXPECT_EQ(revision().GetRevFileName("+" + number), Variant("shelf"));
  reg_.execute("Update Revisions Set Location = Null");
  EXPECT_EQ(revision().GetRevFileName(number), Variant("")) << "Null gives empty text";
  for (const char* none : {"0", "-1", "999", "99999999999"})
    EXPECT_TRUE(revision().GetRevFileName(none).isEmpty()) << none;
}

TEST_F(Revision, DeleteRevisionDeletesTheRowOnly) {
  const std::string file = reg_.folder().file("file.txt");
  test::write(file, "x");
  const std::int32_t id = addRevision(1, "Location = '" + file + "'");
  const std::int32_t other = addRevision(1);
  addApprover(id, "User1", 1);
  bool done = false;
  EXPECT_EQ(statementsOf([&] { done = revision().DeleteRevision(id); }),
            Texts{"Delete Revisions.* From Revisions Where RevisionID = " + std::to_string(id)});
  EXPECT_TRUE(done);
  EXPECT_EQ(reg_.value("Select RevisionID From Revisions"), std::to_string(other));
  EXPECT_EQ(reg_.value("Select Count(*) From ApprovalRouting"), "1");
  EXPECT_TRUE(fs::exists(file));
  EXPECT_TRUE(revision().DeleteRevision(id)) << "the statement ran, that is all it says";
  EXPECT_TRUE(revision().DeleteRevision(-1));
}

TEST_F(Revision, DeleteRevisionTurnsEveryErrorIntoFalse) {
  const std::int32_t id = addRevision(1);
  const test::RawRegister raw(reg_.path());
  raw.refuse("DELETE", "Revisions");
  EXPECT_FALSE(revision().DeleteRevision(id));
  EXPECT_EQ(reg_.value("Select Count(*) From Revisions"), "1");
  raw.allowAgain("Revisions");
  const auto own = vesk_->Revision();
  vesk_->CloseSession();
  EXPECT_FALSE(own->DeleteRevision(id)) << "the connection is closed";
}

TEST_F(Revision, SetUsersRevisionToPointsACopyAtARevision) {
  for (int i = 0; i < 2; ++i)
    reg_.execute(
        "Insert Into Personals (UserID, DocumentID, ManualID, HardCopy, RevisionID) Values "
        "('User1', 'D1', '0', True, 1)");
  bool result = true;
  EXPECT_EQ(statementsOf([&] { result = revision().SetUsersRevisionTo("2", "17"); }),
            Texts{"UPDATE Personals SET Personals.RevisionID = 17 WHERE ReleaseID = 2"});
  EXPECT_FALSE(result) << "although a row was updated";
  EXPECT_EQ(reg_.rows("Select RevisionID From Personals Order By ReleaseID"), (Texts{"1", "17"}));
  EXPECT_FALSE(revision().SetUsersRevisionTo("999", "17"));
  EXPECT_EQ(reg_.rows("Select RevisionID From Personals Order By ReleaseID"), (Texts{"1", "17"}));
}

TEST_F(Revision, IdentifiersThatAreNoNumberAreRefused) {
  addRevision(1, "Location = 'shelf'");
  reg_.execute(
      "Insert Into Personals (UserID, DocumentID, ManualID, HardCopy, RevisionID) Values ('User1', "
      "'D1', '0', True, 1)");
  const auto before = everything();
  for (const std::string& id :
       {std::string(), std::string(" "), std::string("one"), std::string("O'Brien"),
        std::string("O''Brien"), std::string("'1'"), std::string("1 or 1=1"), std::string("1;2"),
        std::string("1 1"), std::string("Null"), std::string("RevisionID"), std::string("(1)"),
        std::string("0x1"), std::string(10000, 'x'), std::string("1\0", 2),
        std::string("caf\xE9")}) {
    EXPECT_EQ(statementsOf([&] {
                EXPECT_RAISES(kSyntax, (void)revision().GetRevFileName(id)) << id.substr(0, 40);
                EXPECT_RAISES(kSyntax, revision().SetUsersRevisionTo(id, "1")) << id.substr(0, 40);
                EXPECT_RAISES(kSyntax, revision().SetUsersRevisionTo("1", id)) << id.substr(0, 40);
              }),
              Texts{});
  }
  // A number all the same, if one that is nobody's: the database says what it thinks of it.
  EXPECT_THROW(revision().SetUsersRevisionTo("1", std::string(10000, '9')), Error);
  EXPECT_EQ(everything(), before);
}

TEST_F(Revision, TheNameOfAUser) {
  EXPECT_EQ(statementsOf([&] { EXPECT_EQ(vesk_->User()->getUserName("User1"), "Anna"); }),
            Texts{"Select UserName From VeskProfiles Where UserID = 'User1'"});
  EXPECT_EQ(vesk_->User()->getUserName("USER2"), "Bert");
  reg_.execute("Update VeskProfiles Set UserName = Null Where UserID = 'User2'");
  for (const std::string& nobody : {std::string("User2"), std::string("User9"), std::string(),
                                    std::string("O''Brien"), std::string(10000, 'x')})
    EXPECT_EQ(vesk_->User()->getUserName(nobody), "") << nobody.substr(0, 40);
  EXPECT_RAISES(kSyntax, (void)vesk_->User()->getUserName("O'Brien"));
  reg_.execute(
      "Update VeskProfiles Set UserID = 'O''Brien', UserName = 'Pat' Where UserID = "
      "'User2'");
  EXPECT_EQ(vesk_->User()->getUserName("O''Brien"), "Pat");
}

}  // namespace
}  // namespace kv
