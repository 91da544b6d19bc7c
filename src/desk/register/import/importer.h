// SPDX-License-Identifier: Apache-2.0
// Fills a register from a folder of CSV files. The format is described in docs/import-format.md.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "common/date.h"
#include "data/connection.h"
#include "desk/register/import/csv_table.h"
#include "desk/register/import/insert.h"

namespace kv::desk {

// The user who made a register. Every register has its own, so he has a key and no record.
inline constexpr const char* kFirstUserKey = "user0";
inline constexpr const char* kFirstUserId = "User0";

// What an approver is told.
[[nodiscard]] std::string approvalText(const std::string& revisionWord, const std::string& level,
                                       const std::string& title, const std::string& documentWord);

struct ImportReport {
  std::vector<std::pair<std::string, std::size_t>> read;  // file and its records
  std::vector<std::pair<std::string, std::size_t>>
      written;                    // table and its new rows; empty when refused
  std::vector<Problem> problems;  // with any of these nothing was written

  // Rows of a file, without its heading, that have one problem or more.
  [[nodiscard]] std::size_t refused(const std::string& file) const;
};

class Importer {
 public:
  // Called with rows done, rows in all, and the file at work.
  using ProgressCall = std::function<void(std::size_t, std::size_t, const std::string&)>;

  // `asOf` is the moment that identifiers of manuals are made of; `userId` stands in for the holder
  // of a manual that nobody holds.
  Importer(Ref<kvConnection> connection, Date asOf, std::string userId, ProgressCall progress);

  // All of the folder or nothing. Raises what the database raises for reasons of its own (locked,
  // full, ...).
  [[nodiscard]] ImportReport run(const std::string& folder);

 private:
  struct Files;
  struct DocumentFacts {
    std::string documentId;
    std::string title;
    std::string location;
    bool controlled = false;
    std::optional<std::int32_t> currentRevision;
  };
  struct RevisionFacts {
    std::size_t row = 0;
    std::int32_t number = 0;
  };

  // Reading and checking; fills the maps below and problems.
  void check(const Files& files);
  void checkUsers(const CsvTable& users, const CsvTable& workgroups);
  void checkDocuments(const CsvTable& documents);
  void checkRevisions(const CsvTable& revisions);
  void checkCurrentRevisions(const CsvTable& documents);
  void checkManuals(const CsvTable& manuals, const CsvTable& copies);
  void checkLinks(const Files& files);
  void checkApprovals(const CsvTable& approvals);

  // A number behind letters, as in user017 or D0001; reports and returns 0 for anything else.
  std::int32_t keyNumber(const CsvTable& file, std::size_t row, std::string_view column);
  std::int32_t smallNumber(const CsvTable& file, std::size_t row, std::string_view column,
                           std::int32_t most);
  bool yesNo(const CsvTable& file, std::size_t row, std::string_view column);
  void requireDay(const CsvTable& file, std::size_t row, std::string_view column);
  // The UserID of a user key; the placeholder TBD as it is, nothing for an empty one.
  std::string userOf(const CsvTable& file, std::size_t row, std::string_view column);
  // The same where a user must be named.
  std::string requireUser(const CsvTable& file, std::size_t row, std::string_view column);
  void requireWorkgroup(const CsvTable& file, std::size_t row);
  void requireManual(const CsvTable& file, std::size_t row);
  const DocumentFacts* documentOf(const CsvTable& file, std::size_t row);
  const RevisionFacts* revisionOf(const CsvTable& file, std::size_t row, std::string_view column);
  // Whether a key that is not among those taken from `target` leads nowhere. It does not when its
  // row is refused already; of a file that could not be read, nobody knows, which is said once.
  bool dangles(const CsvTable& target, const std::string& key);
  void report(const CsvTable& file, std::size_t row, std::string reason);

  void write(const Files& files);
  void writeUsers(const CsvTable& users, const Files& files);
  void writeWorkgroups(const CsvTable& workgroups);
  void writeDocuments(const CsvTable& documents);
  void writeRevisions(const CsvTable& revisions);
  void writeLists(const Files& files);
  void writeManuals(const Files& files);
  void writeCopies(const Files& files);
  void writeActions(const Files& files);
  void put(const CsvTable& file, std::size_t row, const Insert& insert);
  void putAlso(const CsvTable& file, std::size_t row, const Insert& insert);

  Ref<kvConnection> connection_;
  const Files* files_ = nullptr;  // while run() is at work
  Date asOf_;
  std::string userId_;
  ProgressCall progress_;
  ImportReport report_;
  std::size_t done_ = 0;
  std::size_t all_ = 0;

  std::map<std::string, std::int32_t> users_;       // key to number
  std::map<std::string, std::string> userNames_;    // UserID to name
  std::map<std::string, std::int32_t> workgroups_;  // name to number
  std::map<std::string, DocumentFacts> documents_;
  std::map<std::string, RevisionFacts> revisions_;
  std::map<std::string, std::string> manuals_;  // key to ManualID
  std::set<std::string> unchecked_;             // files that references were not looked up in
};

}  // namespace kv::desk
