// SPDX-License-Identifier: Apache-2.0
// A manual of many documents that many users hold: what is done with it, at a size of choice.
#pragma once

#include <fmt/format.h>

#include <chrono>

#include "support/distribution_session.h"

namespace kv::test {

class LargeManual : public DistributionSession<SessionTest> {
 protected:
  // Does everything once and checks what comes of it. With `report` it says how long each took.
  void run(int documents, int users, bool report) {
    report_ = report;
    logIn("Anna");
    make(documents, users);
    const auto connection = vesk_->DataServer()->Connection();
    auto& manuals = *vesk_->Manual();

    timed("release to every user", [&] {
      connection->BeginTrans();
      for (int u = 0; u < users; ++u)
        if (isHard(u))
          EXPECT_TRUE(manuals.ReleaseCopy("M", user(u), std::to_string(u)));
        else
          EXPECT_TRUE(manuals.AddUser("M", user(u)));
      connection->CommitTrans();
    });
    EXPECT_EQ(lines(), documents * users);
    expectLists(documents, users);

    // What is new comes to every holder, and goes from every one, in as many statements as it
    // takes where nobody holds the manual.
    std::int32_t affected = -1;
    const auto put = [&](const std::string& manual, bool remove) {
      return statementsOf([&] {
               EXPECT_TRUE(vesk_->DocumentManualRelation(manual, "New", remove, affected));
             })
          .size();
    };
    const auto inUnheld = put("Unheld", false);
    const auto outOfUnheld = put("Unheld", true);
    EXPECT_EQ(affected, 0);
    timed("put a document in", [&] { EXPECT_EQ(put("M", false), inUnheld); });
    EXPECT_EQ(affected, users);
    EXPECT_EQ(vesk_->Releases("", "M", "New", 0, 0, 0, true)->RecordCount() +
                  vesk_->Releases("", "M", "New")->RecordCount(),
              users);
    EXPECT_EQ(reg_.value("Select Count(*) From Personals Where DocumentID = 'New' and RevisionID = "
                         "99"),
              std::to_string(users));
    EXPECT_EQ(lines(), (documents + 1) * users);
    timed("take a document out", [&] { EXPECT_EQ(put("M", true), outOfUnheld); });
    EXPECT_EQ(affected, users);
    EXPECT_EQ(lines(), documents * users);

    // One more copy, and back.
    std::string number;
    timed("release the next copy", [&] { number = vesk_->User()->ReleaseMan("User1", "M", true); });
    EXPECT_TRUE(manuals.DuplicateCopyNumber("M", number));
    EXPECT_EQ(lines(), documents * (users + 1));
    timed("collect it", [&] { EXPECT_TRUE(manuals.CollectCopy("M", "User1", number)); });
    EXPECT_EQ(lines(), documents * users);
    EXPECT_FALSE(manuals.DuplicateCopyNumber("M", number));

    timed("collect the first and the last", [&] {
      EXPECT_TRUE(vesk_->User()->ReturnMan(user(0), "M", isHard(0)));
      EXPECT_TRUE(vesk_->User()->ReturnMan(user(users - 1), "M", isHard(users - 1)));
    });
    EXPECT_EQ(lines(), documents * (users - 2));
    EXPECT_EQ(vesk_->User()->HardCopies(user(0))->RecordCount(), 0);

    // To the front from the end.
    timed("move the last document to the second place",
          [&] { manuals.RepositionContents("M", document(documents - 1), 2); });
    EXPECT_EQ(reg_.value("Select [Position] From ManualContents Where DocumentID = '" +
                         document(documents - 1) + "'"),
              "2.5");
  }

 private:
  static std::string document(int d) { return fmt::format("D{:05}", d); }
  static std::string user(int u) { return fmt::format("Holder{:04}", u); }
  static bool isHard(int u) { return u % 2 == 0; }
  [[nodiscard]] int lines() const {
    return std::stoi(reg_.value("Select Count(*) From Personals Where ManualID = 'M'"));
  }

  void make(int documents, int users) {
    reg_.connection()->BeginTrans();
    addManual("M");
    addManual("Unheld");
    addDocument("New", 99);
    for (int d = 0; d < documents; ++d) {
      addDocument(document(d), d + 100);
      putInto("M", document(d), std::to_string(d + 1));
    }
    for (int u = 0; u < users; ++u)
      reg_.execute(fmt::format("Insert Into Users (ID, UserID, UserName) Values ({}, '{}', 'H{}')",
                               u + 100, user(u), u));
    reg_.connection()->CommitTrans();
  }

  void expectLists(int documents, int users) {
    const int hard = (users + 1) / 2;
    auto& manuals = *vesk_->Manual();
    // Titles are as documents are numbered, and so are their revisions.
    timed("list a user's hard copies", [&] {
      expectEveryDocument(*vesk_->User()->HardCopies(user(0)), documents, user(0), "0", true);
    });
    timed("list a user's virtual copies", [&] {
      expectEveryDocument(*vesk_->User()->VirtualCopies(user(1)), documents, user(1), "-1", false);
    });
    timed("list a user's releases", [&] {
      expectEveryDocument(*vesk_->Releases(user(0), "", "", 0, 0, 0, true), documents, user(0), "0",
                          true);
      EXPECT_EQ(vesk_->Releases(user(0))->RecordCount(), 0);
    });
    timed("list the holders of hard copies", [&] {
      Texts expected;
      for (int u = 0; u < users; u += 2) expected.push_back(user(u) + "|" + std::to_string(u));
      EXPECT_EQ(rowsOf(*manuals.Copies("M")), expected);
    });
    timed("list the other holders", [&] {
      Texts expected;
      for (int u = 1; u < users; u += 2) expected.push_back(user(u));
      EXPECT_EQ(rowsOf(*manuals.Users("M")), expected);
    });
    timed("list a document's holders", [&] {
      EXPECT_EQ(vesk_->Document()->Copies(document(7))->RecordCount(), hard);
      EXPECT_EQ(vesk_->Document()->Users(document(7))->RecordCount(), users - hard);
    });
    timed("list the contents", [&] {
      const auto rs = manuals.Contents("M");
      EXPECT_EQ(rs->RecordCount(), documents);
      for (int d = 0; d < documents && !rs->Eof(); ++d, rs->MoveNext())
        ASSERT_EQ(shown(rs->Fields("DocumentID")->Value()), document(d));
    });
    timed("list the manuals of a user", [&] {
      EXPECT_EQ(rowsOf(*manuals.PersonalManuals(user(2))), (Texts{"M|Name of M|2|True"}));
    });
  }

  // One copy of every document, in order.
  static void expectEveryDocument(Recordset& rs, int documents, const std::string& user,
                                  const std::string& number, bool hard) {
    EXPECT_EQ(rs.RecordCount(), documents);
    for (int d = 0; d < documents && !rs.Eof(); ++d, rs.MoveNext()) {
      std::string row;
      for (const char* field :
           {"UserID", "DocumentID", "ManualID", "HardCopy", "CopyNumber", "RevisionID"})
        row += shown(rs.Fields(field)->Value()) + "|";
      ASSERT_EQ(row, fmt::format("{}|{}|M|{}|{}|{}|", user, document(d), hard ? "True" : "False",
                                 number, d + 100));
    }
    EXPECT_TRUE(rs.Eof());
  }

  void timed(const char* what, const std::function<void()>& operation) const {
    const auto start = std::chrono::steady_clock::now();
    operation();
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    if (report_) fmt::print("  {:<44} {:>9.3f} s\n", what, took.count());
  }

  bool report_ = false;
};

}  // namespace kv::test
