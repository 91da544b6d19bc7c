// SPDX-License-Identifier: Apache-2.0
#include <iostream>

#include "cli/answers/output.h"
#include "cli/program/given_options.h"
#include "cli/program/verbs.h"
#include "desk/documents/view_documents.h"
#include "desk/queries/query_lookup.h"

namespace kv::cli {

namespace {

using Listing = desk::DocumentListing;

struct List : RegisterVerb {
  Listing listing;

  void describe(Command& verb) {
    addText(verb, "--query", listing.query,
            std::string("The saved query to list by, by number or name; '") + desk::kAllDocuments +
                "' when left out");
    verb.addOption("--sort", listing.sort,
                   "The columns to sort by, separated by commas, each with asc or desc behind it; "
                   "the title when left out, or the number where the register says so");
    verb.addOption("--fields", listing.fields,
                   "The columns to list, separated by commas; * for all")
        ->showDefault();
  }
  void run(const Session& session) const {
    writeRows(std::cout, *desk::listDocuments(session, listing), options.format);
  }
};

}  // namespace

void documentList(Command& verb) { declare<List>(verb); }

}  // namespace kv::cli
