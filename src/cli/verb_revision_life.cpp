#include <iostream>

#include "cli/client_transaction.h"
#include "cli/document_access.h"
#include "cli/given_options.h"
#include "cli/output.h"
#include "cli/revision_decision.h"
#include "cli/revision_life.h"
#include "cli/revision_lookup.h"
#include "cli/revision_standing.h"
#include "cli/sent_actions.h"
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
  const std::string self = doubledQuotes(session.profile()->UserID());
  const std::string whose = doubledQuotes(approver.id);
  const auto& revisions = session->Revision();
  const auto list = revisions->GetRevApprovalList(revision);
  const bool approved = decision == Decision::Approve;
  if (!(approved ? revisions->ApproveRevision(found.row, self, whose, list)
                 : revisions->RejectRevision(found.row, self, whose, list)))
    refuseTurn(session, found, revision, approver);
  found.row->Update();
  if (notes) revisions->SaveApprovalNotes(*notes, whose, revision);
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

constexpr const char* kStepJson =
    "JSON: columns and rows of where the revision stands, and under \"actions\" those of what was "
    "sent";

void addRoute(Command& verb, Action& chosen) {
  auto* sub = verb.addSubcommand("route", "Ask the approvers of the document for their approval");
  const auto options = std::make_shared<Options>();
  const auto revision = std::make_shared<std::int32_t>();
  const auto again = std::make_shared<bool>(false);
  addCommon(*sub, *options);
  addJson(*sub, *options, kStepJson);
  addRevisionKey(*sub, *revision);
  sub->addFlag("--again", *again,
               "Also while it is awaiting approval or is approved: all approvers decide anew");
  sub->footer(
      "The first time, the document's approvers become those of the revision, in their order; "
      "later "
      "changes\nof the document's list do not reach it. The first approver is told. A revision of "
      "a "
      "document without\napprovers is approved at once.");
  sub->callback([&chosen, options, revision, again] {
    chosen = [options, revision, again] { return route(*options, *revision, *again); };
  });
}

void addDecision(Command& verb, Action& chosen, Decision decision) {
  const bool approve = decision == Decision::Approve;
  auto* sub = approve ? verb.addSubcommand("approve", "Approve a revision when it is your turn")
                      : verb.addSubcommand("reject", "Reject a revision when it is your turn");
  const auto options = std::make_shared<Options>();
  const auto revision = std::make_shared<std::int32_t>();
  const auto user = std::make_shared<std::optional<std::string>>();
  const auto notes = std::make_shared<std::optional<std::string>>();
  addCommon(*sub, *options);
  addJson(*sub, *options, kStepJson);
  addRevisionKey(*sub, *revision);
  addText(*sub, "--for", *user, "The approver in whose place to decide, by ID or name")
      ->typeName("USER");
  addText(*sub, "--notes", *notes, "The approver's remark");
  sub->footer(approve
                  ? "The next approver is told, if the register's options say so. When all have "
                    "approved, the revision is\napproved; 'kvvesk revision set-current' puts it "
                    "in force."
                  : "The responsible user is told, if the register's options say so. 'kvvesk "
                    "revision route' asks the\napprovers once more.");
  sub->callback([&chosen, options, revision, decision, user, notes] {
    chosen = [options, revision, decision, user, notes] {
      return decide(*options, *revision, decision, *user, *notes);
    };
  });
}

void addSetCurrent(Command& verb, Action& chosen) {
  auto* sub =
      verb.addSubcommand("set-current", "Put a revision in force; the one before goes out of date");
  const auto options = std::make_shared<Options>();
  const auto revision = std::make_shared<std::int32_t>();
  addCommon(*sub, *options);
  addJson(*sub, *options, kStepJson);
  addRevisionKey(*sub, *revision);
  sub->footer(
      "It has to be approved, or to have been in force before; where the document has no "
      "approvers, "
      "it may\ncome straight from its preparation. Holders of copies are told, if the register's "
      "options say so.");
  sub->callback([&chosen, options, revision] {
    chosen = [options, revision] { return setCurrent(*options, *revision); };
  });
}

void addStatus(Command& verb, Action& chosen) {
  auto* sub = verb.addSubcommand("status", "Say where a revision stands, and who has decided what");
  const auto options = std::make_shared<Options>();
  const auto revision = std::make_shared<std::int32_t>();
  addCommon(*sub, *options);
  addJson(
      *sub, *options,
      "JSON: columns and rows of where the revision stands, and under \"approvals\" those of its "
      "approvers");
  addRevisionKey(*sub, *revision);
  sub->callback([&chosen, options, revision] {
    chosen = [options, revision] { return status(*options, *revision); };
  });
}

}  // namespace

void addRevisionLife(Command& verb, Action& chosen) {
  addStatus(verb, chosen);
  addRoute(verb, chosen);
  addDecision(verb, chosen, Decision::Approve);
  addDecision(verb, chosen, Decision::Reject);
  addSetCurrent(verb, chosen);
}

}  // namespace kv::cli
