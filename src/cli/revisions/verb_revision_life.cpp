// SPDX-License-Identifier: Apache-2.0
#include <iostream>

#include "cli/answers/output.h"
#include "cli/program/given_options.h"
#include "cli/program/verbs.h"
#include "cli/revisions/revision_key.h"
#include "cli/revisions/revision_standing.h"
#include "desk/revisions/decide_revision.h"
#include "desk/revisions/route_revision.h"
#include "desk/revisions/set_current_revision.h"
#include "desk/revisions/view_revisions.h"
#include "recordset/text_field.h"

namespace kv::cli {

namespace {

using desk::Decision;

std::string named(std::int32_t revision, const desk::RevisionStep& step) {
  return "revision " + std::to_string(revision) + " of " + step.documentId;
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
  void run(const Session& session) const {
    const auto step = desk::routeRevision(session, revision, again);
    writeStep(std::cout, "routed the " + named(revision, step), step, options.format);
  }
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
  void run(const Session& session) const {
    const auto decided = desk::decideRevision(session, revision, decision, user, notes);
    writeStep(std::cout,
              (decision == Decision::Approve ? "approved the " : "rejected the ") +
                  named(revision, decided.step) + (user ? " for " + decided.approver : ""),
              decided.step, options.format);
  }
};

struct SetCurrent : Step {
  void run(const Session& session) const {
    const auto current = desk::setCurrentRevision(session, revision);
    std::string outOfDate;
    for (const auto other : current.outOfDate)
      outOfDate += (outOfDate.empty() ? " instead of " : ", ") + std::to_string(other);
    writeStep(std::cout, "put the " + named(revision, current.step) + " in force" + outOfDate,
              current.step, options.format);
  }
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
  [[nodiscard]] int run(const Session& session) const {
    const auto [standing, approvals] = desk::statusOfRevision(session, revision);
    if (options.format == Format::Json) {
      writeJson(std::cout, *standing, "approvals", *approvals);
      return kDone;
    }
    std::cout << fieldText(*standing, "Status") << '\n';
    if (approvals->RecordCount() > 0) writeRows(std::cout, *approvals, options.format);
    return kDone;
  }
};

}  // namespace

void revisionStatus(Command& verb) { declare<Status>(verb); }
void revisionRoute(Command& verb) { declare<Route>(verb); }
void revisionApprove(Command& verb) { declare<Decide<Decision::Approve>>(verb); }
void revisionReject(Command& verb) { declare<Decide<Decision::Reject>>(verb); }
void revisionSetCurrent(Command& verb) { declare<SetCurrent>(verb); }

}  // namespace kv::cli
