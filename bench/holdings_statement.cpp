// SPDX-License-Identifier: Apache-2.0
#include "holdings_statement.h"

#include <fmt/format.h>

#include <initializer_list>

namespace kv::bench {

namespace {

std::string quoted(const char* table, const char* column) {
  return fmt::format(R"("{}"."{}")", table, column);
}

std::string columns(const char* table, std::initializer_list<const char*> names) {
  std::string out;
  for (const char* name : names) out += (out.empty() ? "" : ", ") + quoted(table, name);
  return out;
}

std::string personals() {
  return columns("Personals", {"ReleaseID", "UserID", "DocumentID", "ManualID", "HardCopy",
                               "CopyNumber", "RevisionID"});
}

std::string releaseColumns() {
  return personals() + ", " +
         columns("Revisions",
                 {"RevisionLevel", "EffectiveDate", "RevUser1", "RevUser2", "ChangeDescription",
                  "RevisionStatus", "RoutingStatus", "Location", "ResponsibleID"}) +
         ", " +
         columns("Documents", {"DocumentNumber", "DocumentTitle", "RevisionLevel", "EffectiveDate",
                               "DocUser1", "DocUser2", "DocUser3", "DocUser4", "DocumentNotes",
                               "SecurityLevel", "CurrentRevID", "Controlled", "Location"}) +
         ", " +
         columns("Manuals",
                 {"ManualName", "ManUser1", "ManUser2", "ManUser3", "ManUser4", "ManUserMemo"});
}

}  // namespace

std::string holdingsStatement(Holdings what, const TextKeys& keys) {
  const auto joined = [&](const char* kind, const char* table, const char* by) {
    return fmt::format(R"( {} JOIN "{}" ON {} = {})", kind, table,
                       keys.fold(quoted("Personals", by)), keys.fold(quoted(table, by)));
  };
  const std::string manuals = joined("LEFT", "Manuals", "ManualID");
  const std::string revisions =
      R"( LEFT JOIN "Revisions" ON "Personals"."RevisionID" = "Revisions"."RevisionID")";
  const std::string whose =
      fmt::format(" WHERE {} = {}", keys.fold(quoted("Personals", "UserID")), keys.user);
  const std::string byNumber = fmt::format(R"( ORDER BY {}, {}, {}, "Personals"."ReleaseID")",
                                           keys.order(quoted("Manuals", "ManualName")),
                                           keys.order(quoted("Personals", "CopyNumber")),
                                           keys.order(quoted("Documents", "DocumentTitle")));
  const std::string from = R"( FROM "Personals")";
  const auto document = [&](const char* kind) { return joined(kind, "Documents", "DocumentID"); };
  switch (what) {
    case Holdings::Releases:
      return "SELECT " + releaseColumns() + from + manuals + document("LEFT") + revisions + whose +
             R"( AND "Personals"."HardCopy" = 0 ORDER BY "Personals"."ReleaseID")";
    case Holdings::Personals:
      return "SELECT " + columns("Revisions", {"RevisionLevel"}) + ", " +
             columns("Personals", {"RevisionID"}) + ", " +
             columns("Documents",
                     {"CurrentRevID", "DocumentID", "DocumentNumber", "DocumentTitle"}) +
             ", " + columns("Manuals", {"ManualID", "ManualName"}) + ", " +
             columns("Personals", {"UserID", "ReleaseID", "HardCopy", "CopyNumber"}) + from +
             revisions + manuals + document("INNER") + whose + byNumber;
    case Holdings::PersonalDocuments:
      return "SELECT " + columns("Documents", {"DocumentID", "DocumentTitle"}) + ", " +
             columns("Personals", {"ManualID", "CopyNumber", "ReleaseID", "HardCopy"}) + from +
             document("INNER") + whose +
             fmt::format(R"( ORDER BY {}, {}, "Personals"."ReleaseID")",
                         keys.order(quoted("Personals", "ManualID")),
                         keys.order(quoted("Documents", "DocumentTitle")));
    case Holdings::HardCopies:
      return "SELECT " + personals() + ", " + columns("Manuals", {"ManualName"}) + ", " +
             columns("Revisions", {"RevisionLevel"}) + ", " +
             columns("Documents", {"DocumentNumber", "DocumentTitle", "CurrentRevID"}) + from +
             manuals + document("LEFT") + revisions + whose +
             R"( AND "Personals"."HardCopy" <> 0)" + byNumber;
    case Holdings::VirtualCopies:
      return "SELECT " + personals() + ", " + columns("Manuals", {"ManualName"}) + ", " +
             columns("Documents", {"DocumentTitle", "DocumentNumber", "CurrentRevID"}) + from +
             manuals + document("INNER") + whose + R"( AND "Personals"."HardCopy" = 0)" + byNumber;
  }
  return {};
}

}  // namespace kv::bench
