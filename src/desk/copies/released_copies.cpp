// SPDX-License-Identifier: Apache-2.0
#include "desk/copies/released_copies.h"

#include "common/convert.h"
#include "common/text.h"
#include "data/table_value.h"
#include "desk/people/user_lookup.h"
#include "desk/refusal.h"
#include "recordset/text_field.h"

namespace kv::desk {

namespace {

constexpr const char* kNoManual = "0";

}  // namespace

std::string holderOf(const Session& session, const std::optional<std::string>& user) {
  return user ? findUser(session.database(), *user) : session.profile()->UserID();
}

ReleasedDocument findHardCopy(const Session& session, std::int32_t release) {
  const std::string number = std::to_string(release);
  const auto row = openOwn(session.database(),
                           "Select UserID, DocumentID, ManualID, HardCopy, CopyNumber From "
                           "Personals Where ReleaseID = " +
                               number,
                           kReadOnly);
  if (row->RecordCount() == 0 || isHidden(session, fieldText(*row, "DocumentID")))
    refuse("There is no release " + number + ".");
  if (!toBoolean(row->Fields("HardCopy")->Value()))
    refuse("The release " + number + " is on a personal list; see 'kvvesk personal remove'.");
  const std::string manual = fieldText(*row, "ManualID");
  if (!manual.empty() && manual != kNoManual)
    refuse("The release " + number + " belongs to copy " + fieldText(*row, "CopyNumber") +
           " of the manual " + manual + "; collect that.");
  return {.document = findDocument(session, fieldText(*row, "DocumentID")),
          .userId = fieldText(*row, "UserID")};
}

std::vector<std::int32_t> listedReleases(const Session& session, const DocumentKey& document,
                                         const std::string& userId) {
  const auto rs = openOwn(session.database(),
                          "Select ReleaseID From Personals Where DocumentID = '" + document.joined +
                              "' and UserID = '" + doubledQuotes(userId) + "' and ManualID = '" +
                              kNoManual + "' and HardCopy = False",
                          kReadOnly);
  std::vector<std::int32_t> releases;
  for (; !rs->Eof(); rs->MoveNext()) releases.push_back(toInt32(rs->Fields(0)->Value()));
  return releases;
}

std::int32_t documentsHeld(const Session& session, const ManualKey& manual,
                           const std::string& userId, bool hard, const std::string& copyNumber) {
  return openOwn(session.database(),
                 "Select ReleaseID From Personals Where ManualID = '" + manual.joined +
                     "' and UserID = '" + doubledQuotes(userId) +
                     "' and HardCopy = " + (hard ? "True" : "False") +
                     (copyNumber.empty() ? std::string()
                                         : " and CopyNumber = '" + doubledQuotes(copyNumber) + "'"),
                 kReadOnly)
      ->RecordCount();
}

}  // namespace kv::desk
