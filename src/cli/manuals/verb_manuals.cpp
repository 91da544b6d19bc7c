#include <iostream>

#include "cli/answers/column_list.h"
#include "cli/answers/output.h"
#include "cli/program/given_options.h"
#include "cli/program/verbs.h"
#include "cli/queries/query_lookup.h"
#include "rights/rights.h"

namespace kv::cli {

namespace {

constexpr const char* kTable = "Manuals";
constexpr std::int32_t kEveryManual = -1;

struct Listing {
  std::optional<std::string> query;
  std::string sort = "ManualName";
  std::string fields = "ManualID, ManualName";
};

int list(const Options& options, const Listing& listing) {
  const Session session(options);
  session.requireRight(urViewManualList);
  const auto& database = *session.database();
  const std::string sort = sortList(database, kTable, listing.sort);
  const std::string fields = selectList(database, kTable, listing.fields);
  const std::int32_t query =
      listing.query ? findQuery(session, *listing.query, kManualQueries) : kEveryManual;
  writeRows(std::cout, *session->Manual()->Records(query, sort, {}, fields), options.format);
  return kDone;
}

struct List : RegisterVerb {
  Listing listing;

  void describe(Command& verb) {
    addText(verb, "--query", listing.query,
            "The saved manual query to list by, by number or name; all manuals when left out");
    verb.addOption("--sort", listing.sort,
                   "The columns to sort by, parted by commas, each with asc or desc behind it")
        ->showDefault();
    verb.addOption("--fields", listing.fields, "The columns to list, parted by commas; * for all")
        ->showDefault();
  }
  [[nodiscard]] int run() const { return list(options, listing); }
};

}  // namespace

void manualList(Command& verb) { declare<List>(verb); }

}  // namespace kv::cli
