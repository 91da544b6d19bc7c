// SPDX-License-Identifier: Apache-2.0
#include <iostream>

#include "cli/answers/output.h"
#include "cli/copies/copy_kinds.h"
#include "cli/program/given_options.h"
#include "cli/program/verbs.h"
#include "desk/copies/view_copies.h"

namespace kv::cli {

namespace {

template <bool staleOnly>
struct List : RegisterVerb {
  desk::CopyListing listing;

  void describe(Command& verb) {
    listing.staleOnly = staleOnly;
    addText(verb, "--of", listing.user, "Only copies that this user has, by ID or name")
        ->typeName("USER");
    addText(verb, "--manual", listing.manual,
            "Only copies that came with this manual, by identifier or name");
    addText(verb, "--document", listing.document,
            "Only copies of this document, by identifier or number");
    addText(verb, "--manual-query", listing.manualQuery,
            "Only copies whose manual a saved manual query finds, by number or name");
    addText(verb, "--document-query", listing.documentQuery,
            "Only copies whose document a saved document query finds, by number or name");
    addCopyKinds(verb, listing.kinds);
  }
  void run(const Session& session) const {
    writeRows(std::cout, *desk::listCopies(session, listing), options.format);
  }
};

}  // namespace

void copyReleases(Command& verb) { declare<List<false>>(verb); }
void copyStale(Command& verb) { declare<List<true>>(verb); }

}  // namespace kv::cli
