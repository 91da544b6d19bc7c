// SPDX-License-Identifier: Apache-2.0
#include "sample_register.h"

#include <fmt/format.h>

#include <cstdlib>
#include <filesystem>
#include <map>

#include "bench_session.h"
#include "floor.h"
#include "schema/create_register.h"

namespace kv::bench {

namespace {

namespace fs = std::filesystem;

class Folder {
 public:
  Folder() {
    const char* kept = std::getenv("KVVESK_BENCH_FOLDER");
    kept_ = kept != nullptr;
    path_ = kept_ ? fs::path(kept)
                  : fs::temp_directory_path() / fmt::format("kvvesk-bench-{}", processNumber());
    fs::create_directories(path_);
  }
  ~Folder() {
    if (kept_) return;
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  Folder(Folder&&) = delete;
  Folder& operator=(Folder&&) = delete;
  [[nodiscard]] const fs::path& path() const { return path_; }

 private:
  bool kept_ = false;
  fs::path path_;
};

// A number that visits 0 to size - 1 in no order; good enough to keep titles from being sorted
// already.
int scattered(int n, int size) {
  return static_cast<int>((static_cast<long long>(n) * 7919 + 104729) % size);
}

void fill(const std::string& path, int documents) {
  FloorDatabase db(path);
  // Fast and without a net: a fill that is cut short is made anew.
  db.run("PRAGMA journal_mode = OFF");
  db.run("PRAGMA synchronous = OFF");
  db.run("PRAGMA cache_size = -1048576");
  db.run("BEGIN IMMEDIATE");
  FloorStatement document(
      db,
      "INSERT INTO Documents (DocumentID, DocumentTitle, DocumentNumber, RevisionLevel, "
      "EffectiveDate, "
      "DocUser1, DocUser2, DocumentNotes, SecurityLevel, Location, Controlled, CurrentRevID) "
      "VALUES (?1, ?2, ?3, 'B', '2024-03-09', ?4, 'Procedure', ?5, 0, ?6, -1, ?7)");
  FloorStatement revision(db,
                          "INSERT INTO Revisions (RevisionID, DocumentID, RevisionLevel, "
                          "ChangeDescription, EffectiveDate, "
                          "ResponsibleID, RoutingStatus, RevisionStatus) VALUES (?1, ?2, 'B', "
                          "'First issue', '2024-03-09', "
                          "'User1', 0, 1)");
  FloorStatement copy(db,
                      "INSERT INTO Personals (UserID, DocumentID, ManualID, HardCopy, RevisionID) "
                      "VALUES (?1, ?2, '0', ?3, ?4)");
  for (int n = 0; n < documents; ++n) {
    const std::string id = documentId(n);
    document.bind(1, id);
    document.bind(2, documentTitle(n, documents));
    document.bind(3, fmt::format("WI-{:07}", n));
    document.bind(4, fmt::format("Department {}", n % 25));
    document.bind(5,
                  std::string("Replaces the instruction of the same number. See also the plan."));
    document.bind(6, fmt::format("instructions/{}/{}.pdf", n % 100, n));
    document.bind(7, n + 1);
    document.run();
    revision.bind(1, n + 1);
    revision.bind(2, id);
    revision.run();
    copy.bind(1, fmt::format("User{}", n % 500 + 1));
    copy.bind(2, id);
    copy.bind(3, n % 2 == 0 ? -1 : 0);
    copy.bind(4, n + 1);
    copy.run();
  }
  db.run("COMMIT");
  db.run("PRAGMA journal_mode = WAL");
}

}  // namespace

std::string documentId(int n) {
  return fmt::format("User{}0309241405{:02}{}", n % 500 + 1, n % 60, n);
}

std::string documentTitle(int n, int documents) {
  return fmt::format("Work instruction {:07} for line {}", scattered(n, documents), n % 40);
}

std::string newText() {
  static int count = 0;
  return fmt::format("{} of {}", ++count, processNumber());
}

const std::string& sampleRegister(int documents, const std::string& purpose) {
  static const Folder folder;
  static std::map<std::string, std::string> made;
  const std::string name = fmt::format("{}{}.kvv", documents, purpose);
  auto& path = made[name];
  if (path.empty()) {
    path = (folder.path() / name).string();
    if (fs::exists(path)) return path;
    const auto connection = createRegister(path);
    addAdministrator(*connection);
    connection->Close();
    fill(path, documents);
  }
  return path;
}

}  // namespace kv::bench
