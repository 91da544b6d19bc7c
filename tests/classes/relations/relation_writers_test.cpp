// SPDX-License-Identifier: Apache-2.0
// Processes that release, collect and put documents into manuals at once.
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

#include "support/distribution_session.h"
#include "support/other_user.h"
#include "support/scale.h"

namespace kv {
namespace {

using test::Texts;

// A session of Anna's in another process.
class OtherSession {
 public:
  explicit OtherSession(const std::string& path) {
    vesk_->Login("Anna", "secret", "Lock Timeout=60;Data Source=" + path);
  }
  clsVesk* operator->() const { return &*vesk_; }

 private:
  test::TestSession vesk_;
};

class RelationWriters : public test::DistributionSession<test::SessionTest> {
 protected:
  static constexpr int kProcesses = 4;

  // What the processes answered as numbers, added up.
  static int sum(const Texts& answers) {
    return std::accumulate(answers.begin(), answers.end(), 0,
                           [](int total, const std::string& answer) {
                             EXPECT_EQ(answer.find("error"), std::string::npos) << answer;
                             return total + std::atoi(answer.c_str());
                           });
  }
  // 1 for an operation that went through, 0 for one refused with this code; others go on.
  static int done(std::int32_t refusal, const std::function<void()>& operation) {
    const auto error = test::errorOf(operation);
    if (!error) return 1;
    if (error->number() != kErrorBase + refusal) throw *error;
    return 0;
  }
};

TEST_F(RelationWriters, ADocumentGoesIntoAManualOnce) {
  const int documents = test::steps(20);
  addManual("M1");
  putInto("M1", "first", "1");
  hold("User1", "first", "M1", true, "'1'");
  for (int i = 0; i < documents; ++i) addDocument(fmt::format("D{}", i));
  const auto answers = test::inProcesses(kProcesses, [&](int) {
    const OtherSession vesk(reg_.path());
    int added = 0;
    for (int i = 0; i < documents; ++i)
      added += done(2506, [&] { vesk->DocumentManualRelation("M1", fmt::format("D{}", i)); });
    return std::to_string(added);
  });
  EXPECT_EQ(sum(answers), documents);
  EXPECT_EQ(contents().size(), static_cast<std::size_t>(documents) + 1);
  EXPECT_EQ(copies().size(), static_cast<std::size_t>(documents) + 1) << "and a line for each";
}

TEST_F(RelationWriters, NobodyWhoIsGivenAManualMissesADocument) {
  const int each = test::steps(20);
  addManual("M1");
  addDocument("D");
  putInto("M1", "D", "1");
  for (int p = 0; p < kProcesses; ++p)
    for (int i = 0; i < each; ++i) addDocument(fmt::format("D{}x{}", p, i));
  const auto answers = test::inProcesses(kProcesses, [&](int p) {
    const OtherSession vesk(reg_.path());
    for (int i = 0; i < each; ++i) {
      vesk->ManualUserRelation("M1", fmt::format("U{}x{}", p, i), true, "1", false);
      vesk->DocumentManualRelation("M1", fmt::format("D{}x{}", p, i));
    }
    return std::string("0");
  });
  EXPECT_EQ(sum(answers), 0);
  const int users = kProcesses * each;
  const int documents = users + 1;
  EXPECT_EQ(reg_.value("Select Count(*) From ManualContents"), std::to_string(documents));
  EXPECT_EQ(reg_.value("Select Count(*) From Personals"), std::to_string(users * documents));
  const auto lines = reg_.rows("Select UserID, Count(*) From Personals Group By UserID");
  EXPECT_EQ(lines.size(), static_cast<std::size_t>(users));
  for (const auto& line : lines)
    EXPECT_THAT(line, testing::EndsWith("|" + std::to_string(documents)));
}

TEST_F(RelationWriters, ListsHaveOneOfAKind) {
  addDocument("D1");
  addManual("M1");
  putInto("M1", "D1", "1");
  const int users = test::steps(20);
  const auto answers = test::inProcesses(kProcesses, [&](int) {
    const OtherSession vesk(reg_.path());
    int added = 0;
    for (int i = 0; i < users; ++i) {
      const std::string user = fmt::format("U{}", i);
      std::int32_t release = 0;
      added += done(2519, [&] { vesk->DocumentUserRelation("D1", user, false, false, release); });
      added += done(2523, [&] { vesk->ManualUserRelation("M1", user, false, "-1", false); });
      added += done(2508, [&] { vesk->OwnsRelation("D1", user); });
      added += done(2510, [&] { vesk->ApprovesRelation("D1", user); });
    }
    return std::to_string(added);
  });
  EXPECT_EQ(sum(answers), 4 * users);
  EXPECT_EQ(copies().size(), static_cast<std::size_t>(2 * users));
  for (const char* table : {"Owners", "Routing"})
    EXPECT_EQ(reg_.value(std::string("Select Count(*) From ") + table), std::to_string(users));
}

TEST_F(RelationWriters, EveryReleaseHasARowAndIsCollectedOnce) {
  addDocument("D1");
  addDocument("D2");
  const int each = test::steps(20);
  const auto answers = test::inProcesses(kProcesses, [&](int p) {
    const OtherSession vesk(reg_.path());
    std::string wrong;
    for (int i = 0; i < each; ++i) {
      const std::string user = fmt::format("U{}x{}", p, i);
      std::int32_t release = 0;
      vesk->DocumentUserRelation(i % 2 == 0 ? "D1" : "D2", user, true, false, release);
      if (!(vesk->ReleaseValue(release, "UserID") == Variant(user))) wrong += user + " error ";
    }
    return wrong;
  });
  EXPECT_EQ(sum(answers), 0);
  const int all = kProcesses * each;
  EXPECT_EQ(reg_.value("Select Count(*) From Personals Where UserID Like 'U%'"),
            std::to_string(all))
      << "no temporary key is left";
  const auto numbers = reg_.rows("Select ReleaseID From Personals");
  const auto collected = test::inProcesses(kProcesses, [&](int) {
    const OtherSession vesk(reg_.path());
    int taken = 0;
    for (const auto& number : numbers) {
      std::int32_t release = std::stoi(number);
      taken += done(2517, [&] { vesk->DocumentUserRelation("", "", true, true, release); });
    }
    return std::to_string(taken);
  });
  EXPECT_EQ(sum(collected), all);
  EXPECT_EQ(copies(), Texts{});
}

// Revisions are put in force while a manual is released: whoever holds an older one than the
// current has been told of every later one.
TEST_F(RelationWriters, NobodyHoldsAStaleCopyWithoutBeingTold) {
  const int revisions = test::steps(20);
  const int users = test::steps(40);
  addDocument("D1", 1);
  addDocument("D2", 1);
  addManual("M1");
  for (const char* document : {"D1", "D2"}) putInto("M1", document, "1");
  for (int i = 0; i <= revisions; ++i)
    reg_.execute(
        fmt::format("Insert Into Revisions (DocumentID, RevisionLevel, RevisionStatus) "
                    "Values ('D1', 'L{}', {})",
                    i + 1, i == 0 ? 1 : 4));
  for (int i = 0; i < users; ++i)
    reg_.execute(fmt::format("Insert Into Users (UserID, UserName) Values ('U{}', 'U{}')", i, i));
  constexpr const char* kTellHolders = "00000101000";  // aoNotifyHCUsers, aoSendActions
  reg_.execute(std::string("Update VeskConfig Set ProgramOptions = '") + kTellHolders + "'");
  const auto answers = test::inProcesses(3, [&](int p) {
    const OtherSession vesk(reg_.path());
    if (p == 0) {
      for (int i = 1; i <= revisions; ++i) {
        Ref<Recordset> documents;
        vesk->Revision()->SetAsCurrentRevision(vesk->Revision()->GetRevRS(i + 1), documents, true);
      }
    } else {
      for (int i = p - 1; i < users; i += 2)
        vesk->ManualUserRelation("M1", fmt::format("U{}", i), true, "1", false);
    }
    return std::string("0");
  });
  EXPECT_EQ(sum(answers), 0);
  EXPECT_EQ(reg_.value("Select CurrentRevID From Documents Where DocumentID = 'D1'"),
            std::to_string(revisions + 1));
  for (int i = 0; i < users; ++i) {
    const std::string user = fmt::format("U{}", i);
    const int held = std::stoi(reg_.value(
        "Select RevisionID From Personals Where DocumentID = 'D1' and UserID = '" + user + "'"));
    EXPECT_EQ(reg_.value("Select Count(*) From Actions Where AssigneeID = '" + user + "'"),
              std::to_string(revisions + 1 - held))
        << user;
  }
}

// Manuals that share documents, in every direction at once: nothing waits for what waits for it.
TEST_F(RelationWriters, NobodyWaitsForever) {
  const int rounds = test::steps(20);
  constexpr int kManuals = 3;
  constexpr int kDocuments = 6;  // more than can be out of a manual at one time
  for (int d = 0; d < kDocuments; ++d) addDocument(fmt::format("D{}", d));
  for (int m = 0; m < kManuals; ++m) {
    addManual(fmt::format("M{}", m));
    for (int d = 0; d < kDocuments; ++d)
      putInto(fmt::format("M{}", m), fmt::format("D{}", (m + d) % kDocuments), std::to_string(d));
  }
  const auto answers = test::inProcesses(kProcesses, [&](int p) {
    const OtherSession vesk(reg_.path());
    for (int i = 0; i < rounds; ++i) {
      const std::string manual = fmt::format("M{}", (p + i) % kManuals);
      const std::string document = fmt::format("D{}", (p * 2 + i) % kDocuments);
      const std::string user = fmt::format("U{}", p);
      (void)done(2523, [&] { vesk->ManualUserRelation(manual, user, false, "-1", false); });
      (void)done(2507, [&] { vesk->DocumentManualRelation(manual, document, true); });
      (void)done(2506, [&] { vesk->DocumentManualRelation(manual, document); });
      std::int32_t release = 0;
      vesk->DocumentUserRelation(document, user, true, false, release);
      (void)done(2521, [&] { vesk->ManualUserRelation(manual, user, false, "", true); });
    }
    return std::string("0");
  });
  EXPECT_EQ(sum(answers), 0);
  EXPECT_EQ(contents().size(), static_cast<std::size_t>(kManuals * kDocuments));
  EXPECT_EQ(copies().size(), static_cast<std::size_t>(kProcesses * rounds));
}

}  // namespace
}  // namespace kv
