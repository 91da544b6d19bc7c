// SPDX-License-Identifier: Apache-2.0
#include "life_register.h"

#include <fmt/format.h>

#include "sample_register.h"
#include "user/password.h"

namespace kv::bench {

namespace {

constexpr int kUsers = 1000;
constexpr const char* kFirstApprover = "User11";

class Statements {
 public:
  explicit Statements(const std::string& location)
      : connection_(kvConnection::open("Data Source=" + location)) {
    connection_->BeginTrans();
  }
  void run(const std::string& sql) const {
    std::int32_t rows = 0;
    connection_->Execute(sql, rows);
  }
  [[nodiscard]] bool any(const std::string& sql) const {
    return connection_->OpenRecordset(sql)->RecordCount() > 0;
  }
  void commit() const { connection_->CommitTrans(); }

 private:
  Ref<kvConnection> connection_;
};

}  // namespace

void prepareLife(const std::string& location, int documents) {
  const Statements statements(location);
  if (statements.any("Select Top 1 UserID From Routing")) return;  // kept from an earlier run
  for (int user = 2; user <= kUsers; ++user)
    statements.run(
        fmt::format("Insert Into Users (UserID, UserName) Values ('User{0}', 'Name {0}')", user));
  statements.run(
      fmt::format("Insert Into Users (UserID, UserName, [Password]) Values ('UserH', '{}', '{}')",
                  kRealUser, Passwords().hash("secret")));
  statements.run(
      fmt::format("Insert Into VeskProfiles (UserID, UserName) Values ('UserH', '{}')", kRealUser));
  for (const char* list : {"'User11', 1", "'User12', 2", "'User13', 3"})
    statements.run(
        fmt::format("Insert Into Routing (DocumentID, UserID, ListOrder) Select "
                    "DocumentID, {} From Documents",
                    list));
  for (std::size_t i = 0; i < kHolders.size(); ++i) {
    const int document = static_cast<int>(i);
    const std::string id = documentId(document);
    statements.run("Delete * From Personals Where DocumentID = '" + id + "'");
    for (int holder = 1; holder <= kHolders.at(i); ++holder)
      statements.run(
          fmt::format("Insert Into Personals (UserID, DocumentID, ManualID, HardCopy) "
                      "Values ('User{}', '{}', '0', {})",
                      holder, id, holder % 2 == 0));
    statements.run(
        fmt::format("Insert Into Revisions (RevisionID, DocumentID, RevisionLevel, ResponsibleID, "
                    "RoutingStatus, RevisionStatus) Values ({}, '{}', 'C', 'User1', 0, 4)",
                    secondRevisionOf(document, documents), id));
  }
  statements.run(
      "Update VeskConfig Set ProgramOptions = '00010111010', DBID = 'BENCH', [Revision] = "
      "'revision', [Document] = 'document', Originator = 1, OriginatorID = 'User1'");
  statements.commit();
}

void unroute(const std::string& location) {
  const Statements statements(location);
  statements.run("Delete * From ApprovalRouting");
  statements.run("Delete * From Actions");
  statements.commit();
}

void awaitApprovals(const std::string& location) {
  const Statements statements(location);
  statements.run("Delete * From Actions");
  statements.run("Update ApprovalRouting Set ApprovalStatus = 0 Where ApprovalStatus <> 0");
  statements.run(
      "Update Revisions Set RoutingStatus = 1, RevisionStatus = 3 Where RoutingStatus <> 1 Or "
      "RevisionStatus <> 3");
  if (statements.any("Select Top 1 RevID From ApprovalRouting")) {
    statements.commit();
    return;
  }
  for (const char* place : {"'User11', 1", "'User12', 2", "'User13', 3"})
    statements.run(
        fmt::format("Insert Into ApprovalRouting (RevID, UserID, ListOrder, ApprovalStatus) Select "
                    "RevisionID, {}, 0 From Revisions",
                    place));
  statements.commit();
}

template <class Step>
void LifeClient::step(int revision, Step step) {
  auto& revisions = *session_.vesk().Revision();
  auto& connection = *session_.vesk().DataServer()->Connection();
  if (whole_) connection.BeginTrans();
  const auto row = revisions.GetRevRS(revision);
  step(revisions, row);
  row->Update();
  if (whole_) connection.CommitTrans();
}

void LifeClient::route(int revision) {
  step(revision, [](clsVeskRevision& revisions, const Ref<Recordset>& row) {
    revisions.RouteForApproval(row, true);
  });
}

void LifeClient::approve(int revision) {
  step(revision, [&](clsVeskRevision& revisions, const Ref<Recordset>& row) {
    if (!revisions.ApproveRevision(row, "User1", kFirstApprover,
                                   revisions.GetRevApprovalList(revision)))
      throw std::runtime_error("it is not the first approver's turn");
  });
}

void LifeClient::putInForce(int revision) {
  step(revision, [](clsVeskRevision& revisions, const Ref<Recordset>& row) {
    Ref<Recordset> documents;
    revisions.SetAsCurrentRevision(row, documents, true);
  });
}

}  // namespace kv::bench
