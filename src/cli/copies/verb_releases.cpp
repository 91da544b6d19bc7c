#include <iostream>

#include "cli/answers/output.h"
#include "cli/copies/copy_list.h"
#include "cli/documents/document_access.h"
#include "cli/manuals/manual_lookup.h"
#include "cli/people/user_lookup.h"
#include "cli/program/given_options.h"
#include "cli/program/verbs.h"
#include "cli/queries/query_lookup.h"
#include "common/text.h"
#include "rights/rights.h"

namespace kv::cli {

namespace {

struct Listing {
  std::optional<std::string> user;
  std::optional<std::string> manual;
  std::optional<std::string> document;
  std::optional<std::string> manualQuery;
  std::optional<std::string> documentQuery;
  CopyFilter filter;
};

CopyFilter filterOf(const Session& session, const Listing& listing) {
  CopyFilter filter = listing.filter;
  if (listing.user) filter.user = doubledQuotes(findUser(session.database(), *listing.user));
  if (listing.manual) filter.manual = findManual(session, *listing.manual).joined;
  if (listing.document) filter.document = findDocument(session, *listing.document).joined;
  if (listing.manualQuery)
    filter.manualQuery = findQuery(session, *listing.manualQuery, kManualQueries);
  if (listing.documentQuery) filter.documentQuery = findQuery(session, *listing.documentQuery);
  return filter;
}

// Copies are of documents, come with manuals, and users have them.
void requireRights(const Session& session) {
  for (const auto right : {urViewDocumentList, urViewManualList, urVIEWUSERLIST})
    session.requireRight(right);
}

int list(const Options& options, const Listing& listing, bool staleOnly) {
  const Session session(options);
  requireRights(session);
  const CopyFilter filter = filterOf(session, listing);
  const UserNames names(session.database());
  AnswerSet answer({{"ReleaseID", kTypeInteger},
                    {"UserID", kTypeVarWChar},
                    {"UserName", kTypeVarWChar},
                    {"HardCopy", kTypeBoolean},
                    {"ManualName", kTypeVarWChar},
                    {"CopyNumber", kTypeVarWChar},
                    {"DocumentID", kTypeVarWChar},
                    {"DocumentNumber", kTypeVarWChar},
                    {"DocumentTitle", kTypeLongVarWChar},
                    {"RevisionLevel", kTypeVarWChar},
                    {"CurrentRevisionLevel", kTypeVarWChar},
                    {"State", kTypeVarWChar}});
  for (const auto& copy : copiesHeld(session, filter))
    if (!staleOnly || copy.state == CopyState::Stale)
      answer.add({copy.release, copy.userId, names.of(copy.userId), copy.hard, copy.manual,
                  copy.number, copy.documentId, copy.documentNumber, copy.title, copy.level,
                  copy.currentLevel, copy.stateText()});
  sortCopies(session, answer, "UserName, UserID");
  writeRows(std::cout, answer.rows(), options.format);
  return kDone;
}

template <bool staleOnly>
struct List : RegisterVerb {
  Listing listing;

  void describe(Command& verb) {
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
    addCopyKinds(verb, listing.filter);
  }
  [[nodiscard]] int run() const { return list(options, listing, staleOnly); }
};

}  // namespace

void copyReleases(Command& verb) { declare<List<false>>(verb); }
void copyStale(Command& verb) { declare<List<true>>(verb); }

}  // namespace kv::cli
