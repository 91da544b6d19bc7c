// SPDX-License-Identifier: Apache-2.0
#include <iostream>

#include "cli/answers/output.h"
#include "cli/program/given_options.h"
#include "cli/program/verbs.h"
#include "desk/manuals/view_manuals.h"

namespace kv::cli {

namespace {

using Listing = desk::ManualListing;

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
  void run(const Session& session) const {
    writeRows(std::cout, *desk::listManuals(session, listing), options.format);
  }
};

}  // namespace

void manualList(Command& verb) { declare<List>(verb); }

}  // namespace kv::cli
