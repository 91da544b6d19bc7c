// SPDX-License-Identifier: Apache-2.0
#include "distribution_register.h"

#include <fmt/format.h>

#include "sample_register.h"

namespace kv::bench {

namespace {

constexpr int kLoose = 2000;  // documents from this one on are in no manual
constexpr int kReadersCopies = 200;
constexpr const char* kReadersManual = "Shelf";
// Far from each other where the register is large.
int readersDocument(int copy, int documents) {
  return kLoose + copy * ((documents - kLoose) / kReadersCopies);
}

class Fill {
 public:
  explicit Fill(const Ref<kvConnection>& connection) : connection_(connection) {
    connection_->BeginTrans();
  }
  void run(const std::string& sql) const {
    std::int32_t rows = 0;
    connection_->Execute(sql, rows);
  }
  void manual(const std::string& id, int documents) const {
    run(fmt::format("Insert Into Manuals (ManualID, ManualName) Values ('{0}', 'Manual {0}')", id));
    for (int n = 0; n < documents; ++n)
      run(fmt::format(
          "Insert Into ManualContents (ManualID, DocumentID, [Position]) Values ('{}', '{}', {})",
          id, documentId(n), n + 1));
  }
  void copy(const std::string& user, int document, const std::string& manual, bool hard,
            const std::string& number) const {
    run(
        fmt::format("Insert Into Personals (UserID, DocumentID, ManualID, HardCopy, CopyNumber, "
                    "RevisionID) Values ('{}', '{}', '{}', {}, {}, {})",
                    user, documentId(document), manual, hard, number, document + 1));
  }
  void commit() const { connection_->CommitTrans(); }

 private:
  Ref<kvConnection> connection_;
};

}  // namespace

std::string heldManual(int holders) { return fmt::format("HeldBy{}", holders); }
std::string manualOf(int documents) { return fmt::format("Of{}", documents); }

std::string looseDocument(int n, int documents) {
  return documentId(kLoose + n % (documents - kLoose));
}

void prepareDistribution(const std::string& location, int documents) {
  const auto connection = kvConnection::open("Data Source=" + location);
  // Kept from an earlier run?
  if (connection->OpenRecordset("Select Top 1 ManualID From Manuals")->RecordCount() > 0) return;
  const Fill fill(connection);
  for (const int holders : kManualHolders) {
    const std::string id = heldManual(holders);
    fill.manual(id, 1);
    for (int holder = 0; holder < holders; ++holder)
      fill.copy(fmt::format("Holder{}", holder), 0, id, holder % 2 == 0,
                holder % 2 == 0 ? fmt::format("'{:05}'", holder) : "'-1'");
  }
  for (const int size : kManualDocuments) fill.manual(manualOf(size), size);
  fill.manual(kReadersManual, 0);
  for (int copy = 0; copy < kReadersCopies; ++copy) {
    const bool alone = copy % 5 < 2;
    fill.copy(kReader, readersDocument(copy, documents), alone ? "0" : kReadersManual,
              copy % 2 == 0, alone ? "Null" : fmt::format("'{}'", copy % 2 == 0 ? 1 : -1));
  }
  fill.run("Update VeskConfig Set ProgramOptions = '00010111010'");
  fill.commit();
}

void DistributionClient::putInto(const std::string& manual, const std::string& document) const {
  session_.vesk().DocumentManualRelation(manual, document);
}

void DistributionClient::takeOut(const std::string& manual, const std::string& document) const {
  session_.vesk().DocumentManualRelation(manual, document, true);
}

void DistributionClient::giveManual(const std::string& manual) const {
  session_.vesk().ManualUserRelation(manual, kReader, true, kCopyNumber, false);
}

void DistributionClient::takeManual(const std::string& manual) const {
  session_.vesk().ManualUserRelation(manual, kReader, true, kCopyNumber, true);
}

int DistributionClient::giveDocument(const std::string& document) const {
  std::int32_t release = 0;
  session_.documents().ReleaseCopy(document, kReader, release);
  return release;
}

void DistributionClient::takeDocument(int release) const {
  session_.documents().CollectCopy(release);
}

std::size_t DistributionClient::list(Holdings what, const std::string& user) const {
  auto& vesk = session_.vesk();
  switch (what) {
    case Holdings::Releases: return readToEnd(*vesk.Releases(user));
    case Holdings::Personals: return readToEnd(*vesk.Document()->Personals(user, true, true));
    case Holdings::PersonalDocuments: return readToEnd(*vesk.Document()->PersonalDocuments(user));
    case Holdings::HardCopies: return readToEnd(*vesk.User()->HardCopies(user));
    case Holdings::VirtualCopies: return readToEnd(*vesk.User()->VirtualCopies(user));
  }
  return 0;
}

}  // namespace kv::bench
