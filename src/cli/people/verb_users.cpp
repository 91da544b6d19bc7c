#include <iostream>

#include "cli/answers/column_list.h"
#include "cli/answers/output.h"
#include "cli/program/given_options.h"
#include "cli/program/verbs.h"
#include "cli/queries/query_lookup.h"
#include "common/text.h"
#include "rights/rights.h"

namespace kv::cli {

namespace {

constexpr const char* kTable = "Users";
constexpr const char* kFields = "UserID, UserName, Alias, Title, Email";
constexpr const char* kSecret = "Password";
constexpr std::int32_t kEverybody = -1;

struct Listing {
  std::optional<std::string> query;
  std::string sort = "UserName";
  std::string fields = kFields;
};

std::string allFields(const Database& database) {
  const auto keeper = database.keeperOf(kTable);
  std::string list;
  for (const auto& column : (keeper ? *keeper : database).catalog()->find(kTable)->columns)
    if (column.name != kSecret) list += (list.empty() ? "" : ", ") + column.name;
  return list;
}

// Refuses a list of columns, in brackets, that has the passwords in it. An order by them would tell
// something of them too.
std::string withoutSecrets(std::string list) {
  if (list.find(std::string("[") + kSecret + "]") != std::string::npos)
    deny("passwords are not listed");
  return list;
}

int list(const Options& options, const Listing& listing) {
  const Session session(options);
  session.requireRight(urVIEWUSERLIST);
  const auto& database = *session.database();
  const bool all = trimmed(listing.fields) == "*";
  const std::string fields =
      withoutSecrets(selectList(database, kTable, all ? allFields(database) : listing.fields));
  const std::string sort = withoutSecrets(sortList(database, kTable, listing.sort));
  const std::int32_t query =
      listing.query ? findQuery(session, *listing.query, kUserQueries) : kEverybody;
  writeRows(std::cout, *session->User()->Records(query, sort, {}, fields), options.format);
  return kDone;
}

struct List : RegisterVerb {
  Listing listing;

  void describe(Command& verb) {
    addText(verb, "--query", listing.query,
            "The saved user query to list by, by number or name; everybody when left out");
    verb.addOption("--sort", listing.sort,
                   "The columns to sort by, parted by commas, each with asc or desc behind it")
        ->showDefault();
    verb.addOption("--fields", listing.fields, "The columns to list, parted by commas; * for all")
        ->showDefault();
  }
  [[nodiscard]] int run() const { return list(options, listing); }
};

}  // namespace

void userList(Command& verb) { declare<List>(verb); }

}  // namespace kv::cli
