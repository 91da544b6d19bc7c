// SPDX-License-Identifier: Apache-2.0
// Writes a register as the folder of CSV files that the import reads. The format is described in
// docs/import-format.md.
#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "desk/register/export/csv_writer.h"
#include "recordset/database.h"
#include "recordset/recordset.h"

namespace kv::desk {

class Exporter {
 public:
  using Written = std::vector<std::pair<std::string, std::size_t>>;  // file and its records

  Exporter(std::shared_ptr<Database> database, std::filesystem::path folder)
      : database_(std::move(database)), folder_(std::move(folder)) {}

  // Writes all files. What does not fit the format is written as it is, for the import to refuse.
  [[nodiscard]] Written run();

 private:
  using Record = std::vector<std::string>;
  class Rows;

  [[nodiscard]] Rows rows(const std::string& sql) const;
  void write(const std::string& name, const Record& heading, const std::vector<Record>& records);
  [[nodiscard]] std::string userKey(const std::string& userId) const;
  [[nodiscard]] std::string documentKey(const std::string& documentId) const;
  [[nodiscard]] std::string manualKey(const std::string& manualId) const;
  struct Recorded {
    std::string by;
    std::string moment;
  };
  // Who recorded a document and when, where its identifier tells.
  [[nodiscard]] std::optional<Recorded> recorded(const std::string& documentId) const;

  void writeWorkgroups();
  void writeUsers();
  void writeDocuments();
  void writeRevisions();
  void writeLists();
  void writeApprovals();
  void writeManuals();
  void writeCopies();

  std::shared_ptr<Database> database_;
  std::filesystem::path folder_;
  Written written_;
  std::map<std::string, std::string> workgroups_;  // number to title
  std::map<std::string, std::string> users_;       // UserID to key, as the others
  std::map<std::string, std::string> firstDays_;   // UserID to the day of his first revision
  std::map<std::string, std::string> documents_;
  std::map<std::string, std::string> titles_;  // of documents, by DocumentID
  std::map<std::string, std::string> manuals_;
};

}  // namespace kv::desk
