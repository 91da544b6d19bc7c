#include <iostream>

#include "cli/answers/column_list.h"
#include "cli/answers/output.h"
#include "cli/program/given_options.h"
#include "cli/program/verbs.h"
#include "cli/queries/query_lookup.h"
#include "common/error.h"
#include "rights/rights.h"

namespace kv::cli {

namespace {

constexpr const char* kTable = "Documents";
constexpr const char* kFields =
    "DocumentID, DocumentNumber, DocumentTitle, RevisionLevel, EffectiveDate, Controlled";

struct Listing {
  std::optional<std::string> query;
  std::string sort;
  std::string fields = kFields;
};

std::int32_t queryOf(const Session& session, const std::optional<std::string>& query) {
  if (query) return findQuery(session, *query);
  if (!isQueryName(session, kAllDocuments))
    throw Error(kInvalidCall, "kvvesk",
                "There is no document query '" + std::string(kAllDocuments) +
                    "' to list by; add it with 'kvvesk queries add', or give --query.");
  return findQuery(session, kAllDocuments);
}

int list(const Options& options, const Listing& listing) {
  const Session session(options);
  session.requireRight(urViewDocumentList);
  const auto& database = *session.database();
  std::string sort = listing.sort;
  if (sort.empty()) sort = session->AppOption(aoDocSortByNum) ? "DocumentNumber" : "DocumentTitle";
  const auto rs = session->Document()->Records(queryOf(session, listing.query),
                                               sortList(database, kTable, sort), {},
                                               selectList(database, kTable, listing.fields));
  writeRows(std::cout, *rs, options.format);
  return kDone;
}

struct List : RegisterVerb {
  Listing listing;

  void describe(Command& verb) {
    addText(verb, "--query", listing.query,
            std::string("The saved query to list by, by number or name; '") + kAllDocuments +
                "' when left out");
    verb.addOption("--sort", listing.sort,
                   "The columns to sort by, parted by commas, each with asc or desc behind it; "
                   "the title when left out, or the number where the register says so");
    verb.addOption("--fields", listing.fields, "The columns to list, parted by commas; * for all")
        ->showDefault();
  }
  [[nodiscard]] int run() const { return list(options, listing); }
};

}  // namespace

void documentList(Command& verb) { declare<List>(verb); }

}  // namespace kv::cli
