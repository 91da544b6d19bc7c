#include <iostream>

#include "cli/answers/output.h"
#include "cli/documents/document_access.h"
#include "cli/people/sent_actions.h"
#include "cli/program/client_transaction.h"
#include "cli/program/given_options.h"
#include "cli/program/verbs.h"
#include "cli/revisions/revision_decision.h"
#include "cli/revisions/revision_key.h"
#include "cli/revisions/revision_lookup.h"
#include "cli/revisions/revision_standing.h"
#include "common/convert.h"
#include "common/error.h"
#include "common/text.h"
#include "kvdata/recordset/text_field.h"
#include "kvdata/table_value.h"
#include "revisions/revision_status.h"
#include "rights/rights.h"

namespace kv::cli {

namespace {

enum class Decision : std::uint8_t { Approve, Reject };

[[noreturn]] void refuse(const std::string& why) { throw Error(kInvalidCall, "kvvesk", why); }

std::string named(std::int32_t revision) { return "revision " + std::to_string(revision); }

bool hasStatus(const FoundRevision& found, RevisionStatus status) {
  return compareValues(found.row->Fields("RevisionStatus")->Value(),
                       static_cast<std::int16_t>(status)) == 0;
}

// From here on nobody else changes a revision of the same document, or tells anybody about one.
FoundRevision lockedRevision(const Session& session, ClientTransaction& transaction,
                             std::int32_t revision,
                             FoundRevision (*find)(const Session&, std::int32_t)) {
  transaction.lock("Revisions", "DocumentID", find(session, revision).documentId);
  return find(session, revision);
}

// A document that is not controlled has no revisions that anybody approves or puts in force.
Ref<Recordset> controlledDocument(const Session& session, const std::string& id) {
  auto document = openOwn(session.database(),
                          "Select Controlled, CurrentRevID From Documents Where DocumentID = '" +
                              doubledQuotes(id) + "'",
                          kReadOnly);
  if (document->RecordCount() == 0) refuse("There is no document '" + id + "'.");
  if (!toBoolean(document->Fields("Controlled")->Value()))
    refuse("The document " + id + " is not controlled.");
  return document;
}

void requireRoutable(const Session& session, const FoundRevision& found, std::int32_t revision,
                     bool again) {
  (void)controlledDocument(session, found.documentId);
  if (hasStatus(found, RevisionStatus::BeingRevised) || hasStatus(found, RevisionStatus::Rejected))
    return;
  const bool decided = hasStatus(found, RevisionStatus::AwaitingApproval) ||
                       hasStatus(found, RevisionStatus::Approved);
  if (decided && again) return;
  refuse("The " + named(revision) + " cannot be routed: " + standingText(session, found.row) +
         (decided ? ". --again asks all approvers once more." : "."));
}

int route(const Options& options, std::int32_t revision, bool again) {
  const Session session(options);
  ClientTransaction transaction(session);
  const auto found = lockedRevision(session, transaction, revision, findRevision);
  requireOwner(found.owned);
  requireRoutable(session, found, revision, again);
  const SentActions sent(session, found.documentId, revision);
  session->Revision()->RouteForApproval(found.row, true);
  found.row->Update();
  transaction.commit();
  writeStep(std::cout, session, "routed the " + named(revision) + " of " + found.documentId,
            revision, sent, options.format);
  return kDone;
}

int decide(const Options& options, std::int32_t revision, Decision decision,
           const std::optional<std::string>& user, const std::optional<std::string>& notes) {
  const Session session(options);
  ClientTransaction transaction(session);
  const auto found = lockedRevision(session, transaction, revision, findRevisionToDecide);
  if (!hasStatus(found, RevisionStatus::AwaitingApproval))
    refuse("The " + named(revision) +
           " is not awaiting approval: " + standingText(session, found.row) + ".");
  const Approver approver = findApprover(session, revision, user);
  requireDecider(session, found, revision, approver);
  const SentActions sent(session, found.documentId, revision);
  const std::string& self = session.profile()->UserID();
  const auto& revisions = session->Revision();
  const auto list = revisions->GetRevApprovalList(revision);
  const bool approved = decision == Decision::Approve;
  if (!(approved ? revisions->ApproveRevision(found.row, self, approver.id, list)
                 : revisions->RejectRevision(found.row, self, approver.id, list)))
    refuseTurn(session, found, revision, approver);
  found.row->Update();
  if (notes) revisions->SaveApprovalNotes(*notes, approver.id, revision);
  transaction.commit();
  writeStep(std::cout, session,
            (approved ? "approved the " : "rejected the ") + named(revision) + " of " +
                found.documentId + (user ? " for " + approver.name : ""),
            revision, sent, options.format);
  return kDone;
}

void requireReady(const Session& session, const FoundRevision& found, std::int32_t revision) {
  const auto document = controlledDocument(session, found.documentId);
  const bool pointed = compareValues(document->Fields("CurrentRevID")->Value(), revision) == 0;
  if (hasStatus(found, RevisionStatus::Current) && pointed)
    refuse("The " + named(revision) + " is in force already.");
  // One that was in force has been approved in its time.
  if (hasStatus(found, RevisionStatus::Approved) || hasStatus(found, RevisionStatus::OutOfDate) ||
      hasStatus(found, RevisionStatus::Current))
    return;
  const auto approvers = openOwn(
      session.database(),
      "Select UserID From Routing Where DocumentID = '" + doubledQuotes(found.documentId) + "'",
      kReadOnly);
  if (hasStatus(found, RevisionStatus::BeingRevised) && approvers->RecordCount() == 0) return;
  refuse("The " + named(revision) + " is not approved: " + standingText(session, found.row) + ".");
}

int setCurrent(const Options& options, std::int32_t revision) {
  const Session session(options);
  session.requireRight(urSetCurrentRevision);
  ClientTransaction transaction(session);
  const auto found = lockedRevision(session, transaction, revision, findRevision);
  transaction.lock("Documents", "DocumentID", found.documentId);
  requireReady(session, found, revision);
  const auto before =
      openOwn(session.database(),
              "Select RevisionID From Revisions Where RevisionStatus = " +
                  std::to_string(static_cast<int>(RevisionStatus::Current)) +
                  " and DocumentID = '" + doubledQuotes(found.documentId) + "' and RevisionID <> " +
                  std::to_string(revision) + " Order By RevisionID",
              kReadOnly);
  std::string outOfDate;
  for (; !before->Eof(); before->MoveNext())
    outOfDate += (outOfDate.empty() ? "" : ", ") + fieldText(*before, "RevisionID");
  const SentActions sent(session, found.documentId, revision);
  Ref<Recordset> documents;
  session->Revision()->SetAsCurrentRevision(found.row, documents, true);
  transaction.commit();
  writeStep(std::cout, session,
            "put the " + named(revision) + " of " + found.documentId + " in force" +
                (outOfDate.empty() ? "" : " instead of " + outOfDate),
            revision, sent, options.format);
  return kDone;
}

const char* decisionText(const Variant& status) {
  if (compareValues(status, std::int16_t{0}) == 0) return "pending";
  if (compareValues(status, std::int16_t{1}) == 0) return "approved";
  if (compareValues(status, std::int16_t{2}) == 0) return "rejected";
  return "";
}

int status(const Options& options, std::int32_t revision) {
  const Session session(options);
  session.requireRight(urViewRevisionDetail);
  (void)findRevision(session, revision);
  AnswerSet approvals({{"UserID", kTypeVarWChar},
                       {"UserName", kTypeLongVarWChar},
                       {"Decision", kTypeVarWChar},
                       {"ApprovedBy", kTypeVarWChar},
                       {"DateApproved", kTypeDate},
                       {"Notes", kTypeLongVarWChar}});
  const auto list = session->Revision()->GetRevApprovalList(revision);
  for (; !list->Eof(); list->MoveNext()) {
    const auto value = [&](const char* column) { return list->Fields(column)->Value(); };
    approvals.add({value("UserID"),
                   textOrNull(joinText(
                       session->MainUser()->UserValue(fieldText(*list, "UserID"), "UserName"))),
                   decisionText(value("ApprovalStatus")), value("ApprovedBy"),
                   value("DateApproved"), value("Notes")});
  }
  const AnswerSet standing = standingOf(session, revision);
  if (options.format == Format::Json) {
    writeJson(std::cout, standing.rows(), "approvals", approvals.rows());
    return kDone;
  }
  std::cout << fieldText(standing.rows(), "Status") << '\n';
  if (approvals.rows().RecordCount() > 0) writeRows(std::cout, approvals.rows(), options.format);
  return kDone;
}

// A step of a revision on its way.
struct Step : RegisterVerb {
  static constexpr Formats kFormats = Formats::None;
  std::int32_t revision = 0;

  void describe(Command& verb) {
    addJson(verb, options,
            "JSON: columns and rows of where the revision stands, and under \"actions\" those of "
            "what was sent");
    addRevisionKey(verb, revision);
  }
};

struct Route : Step {
  bool again = false;

  void describe(Command& verb) {
    Step::describe(verb);
    verb.addFlag("--again", again,
                 "Also while it is awaiting approval or is approved: all approvers decide anew");
  }
  [[nodiscard]] int run() const { return route(options, revision, again); }
};

template <Decision decision>
struct Decide : Step {
  std::optional<std::string> user;
  std::optional<std::string> notes;

  void describe(Command& verb) {
    Step::describe(verb);
    addText(verb, "--for", user, "The approver in whose place to decide, by ID or name")
        ->typeName("USER");
    addText(verb, "--notes", notes, "The approver's remark");
  }
  [[nodiscard]] int run() const { return decide(options, revision, decision, user, notes); }
};

struct SetCurrent : Step {
  [[nodiscard]] int run() const { return setCurrent(options, revision); }
};

struct Status : RegisterVerb {
  static constexpr Formats kFormats = Formats::None;
  std::int32_t revision = 0;

  void describe(Command& verb) {
    addJson(verb, options,
            "JSON: columns and rows of where the revision stands, and under \"approvals\" those "
            "of its approvers");
    addRevisionKey(verb, revision);
  }
  [[nodiscard]] int run() const { return status(options, revision); }
};

}  // namespace

void revisionStatus(Command& verb) { declare<Status>(verb); }
void revisionRoute(Command& verb) { declare<Route>(verb); }
void revisionApprove(Command& verb) { declare<Decide<Decision::Approve>>(verb); }
void revisionReject(Command& verb) { declare<Decide<Decision::Reject>>(verb); }
void revisionSetCurrent(Command& verb) { declare<SetCurrent>(verb); }

}  // namespace kv::cli
