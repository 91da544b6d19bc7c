#include <iostream>

#include "cli/answers/output.h"
#include "cli/copies/copy_kinds.h"
#include "cli/program/given_options.h"
#include "cli/program/verbs.h"
#include "desk/copies/view_copies.h"

namespace kv::cli {

namespace {

using Listing = desk::CopyListing;

int list(const Options& options, Listing listing, bool staleOnly) {
  listing.staleOnly = staleOnly;
  const Session session(options);
  writeRows(std::cout, *desk::listCopies(session, listing), options.format);
  return kDone;
}

struct List {
  bool staleOnly;
  Options options = {};
  Listing listing = {};

  void describe(Command& verb) {
    addCommon(verb, options);
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
    verb.footer(staleOnly ? kStaleFooter : kFooter);
  }
  [[nodiscard]] int run() const { return list(options, listing, staleOnly); }

  static constexpr const char* kFooter =
      "RevisionLevel is that of the copy, CurrentRevisionLevel that of the revision in force. "
      "State is current\nor stale, or uncontrolled for documents that are not under control.\n"
      "Secured documents are listed for administrators and their owners only.";
  static constexpr const char* kStaleFooter =
      "RevisionLevel is that of the copy, CurrentRevisionLevel that of the revision in force, "
      "empty when\nthere is none. Copies of uncontrolled documents are never stale.\n"
      "Exit status is 0 whether or not there are any.\n"
      "Secured documents are listed for administrators and their owners only.";
};

}  // namespace

void copyReleases(Command& verb) { declare<List>(verb, false); }
void copyStale(Command& verb) { declare<List>(verb, true); }

}  // namespace kv::cli
