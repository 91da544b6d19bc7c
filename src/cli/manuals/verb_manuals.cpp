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

}  // namespace

void addManuals(Command& app, Action& chosen) {
  auto* verb = app.addSubcommand("manuals", "List manuals, all or those of a saved query");
  const auto options = std::make_shared<Options>();
  const auto listing = std::make_shared<Listing>();
  addCommon(*verb, *options);
  addFormats(*verb, *options, false);
  addText(*verb, "--query", listing->query,
          "The saved manual query to list by, by number or name; all manuals when left out");
  verb->addOption("--sort", listing->sort,
                  "The columns to sort by, parted by commas, each with asc or desc behind it")
      ->showDefault();
  verb->addOption("--fields", listing->fields, "The columns to list, parted by commas; * for all")
      ->showDefault();
  verb->footer("Columns: ID, ManualID, ManualName, ManUser1 to ManUser4, ManUserMemo.");
  verb->callback([&chosen, options, listing] {
    chosen = [options, listing] { return list(*options, *listing); };
  });
}

}  // namespace kv::cli
