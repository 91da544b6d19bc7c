#include <iostream>

#include "cli/answers/output.h"
#include "cli/program/given_options.h"
#include "cli/program/verbs.h"
#include "desk/manuals/view_manuals.h"

namespace kv::cli {

namespace {

using Listing = desk::ManualListing;

int list(const Options& options, const Listing& listing) {
  const Session session(options);
  writeRows(std::cout, *desk::listManuals(session, listing), options.format);
  return kDone;
}

struct List : RegisterVerb {
  Listing listing;

  void describe(Command& verb) {
    addText(verb, "--query", listing.query,
            "The saved manual query to list by, by number or name; all manuals when left out");
    verb.addOption("--sort", listing.sort,
                   "The columns to sort by, separated by commas, each with asc or desc behind it")
        ->showDefault();
    verb.addOption("--fields", listing.fields,
                   "The columns to list, separated by commas; * for all")
        ->showDefault();
  }
  [[nodiscard]] int run() const { return list(options, listing); }
};

}  // namespace

void manualList(Command& verb) { declare<List>(verb); }

}  // namespace kv::cli
