// SPDX-License-Identifier: Apache-2.0
#include "bench_session.h"

#include <fmt/format.h>

#include <vector>

#include "recordset/constants.h"
#include "recordset/database.h"
#include "user/password.h"

namespace kv::bench {

namespace {

// Logging in is not what is measured.
constexpr PasswordCost kCheap{.memoryKiB = 64, .passes = 1};

}  // namespace

void addAdministrator(kvConnection& connection) {
  std::int32_t rows = 0;
  connection.Execute("Insert Into Users (UserID, UserName, [Password]) Values ('User1', 'Anna', '" +
                         Passwords(kCheap).hash("secret") + "')",
                     rows);
  connection.Execute(
      "Insert Into VeskProfiles (UserID, UserName, Administrator) Values ('User1', 'Anna', True)",
      rows);
}

BenchSession::BenchSession(const std::string& location) : vesk_(clsVesk::create(kCheap)) {
  vesk_->Login("Anna", "secret", "Data Source=" + location);
}

BenchSession::~BenchSession() {
  try {
    vesk_->CloseSession();
  } catch (const std::exception&) {  // the connection is gone then, which is what was wanted
  }
}

std::uint64_t BenchSession::roundTrips() const {
  return vesk_->DataServer()->Connection()->database()->engine().roundTrips();
}

std::int32_t addQuery(const BenchSession& session, bool withCriteria) {
  auto& documents = session.documents();
  const auto query = documents.AddQuery();
  if (withCriteria) {
    query->SetQueryValue("DocType", 0);
    query->SetQueryValue("Field1", kTitlePart);
    query->SetQueryValue("Field1Key", 1);
    documents.SaveQuery(query);
  }
  return query->id();
}

void load(const BenchSession& session, const std::string& id, DocumentFields& f) {
  session.documents().LoadData(id, f.title, f.number, f.revisionLevel, f.effectiveDate, f.user1,
                               f.user2, f.user3, f.user4, f.notes, f.secured, f.location,
                               f.controlled, f.currentRevision);
}

void addDocument(const BenchSession& session, const std::string& user, int n) {
  session.documents().Add(user, fmt::format("Added instruction {:07}", n),
                          fmt::format("AI-{:07}", n), "Department 7", "Procedure", "", "",
                          "Added while measuring.", 0, fmt::format("added/{}.pdf", n), "A",
                          "2024-03-09", true, true);
}

std::size_t readFirst(const BenchSession& session, std::int32_t query) {
  const auto rs = session.documents().Records(query);
  return rs->Fields("DocumentTitle")->Text().size() + static_cast<std::size_t>(rs->RecordCount());
}

std::size_t readToEnd(Recordset& rs) {
  std::vector<Ref<Field>> fields;
  std::vector<bool> isText;
  for (std::int32_t i = 0; i < rs.Fields().Count(); ++i) {
    fields.push_back(rs.Fields(i));
    isText.push_back(fields.back()->Type() == kTypeVarWChar ||
                     fields.back()->Type() == kTypeLongVarWChar);
  }
  std::size_t sum = 0;
  for (; !rs.Eof(); rs.MoveNext())
    for (std::size_t i = 0; i < fields.size(); ++i) {
      if (isText[i]) {
        sum += fields[i]->Text().size();
      } else {
        const Variant value = fields[i]->Value();
        if (const auto* number = value.as<std::int32_t>()) sum += static_cast<std::size_t>(*number);
      }
    }
  return sum;
}

}  // namespace kv::bench
