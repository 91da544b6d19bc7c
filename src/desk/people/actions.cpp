// SPDX-License-Identifier: Apache-2.0
#include "desk/people/actions.h"

#include "common/clock.h"
#include "common/convert.h"
#include "common/text.h"
#include "data/table_value.h"
#include "desk/answer_set.h"
#include "desk/people/user_lookup.h"
#include "desk/refusal.h"
#include "desk/transaction.h"
#include "recordset/text_field.h"

namespace kv::desk {

namespace {

enum class Step : std::uint8_t { Complete, Close };

// The action of this register with a number; those of others are for administrators only.
Ref<Recordset> findAction(const Session& session, std::int32_t action) {
  auto row = openOwn(session.database(),
                     "Select AssigneeID, ReferenceID, DateCompleted, DateClosed From Actions "
                     "Where ActionID = " +
                         std::to_string(action),
                     kReadOnly);
  const std::string sender = joinText(session->DataServer()->Config()->Value("DBID"));
  if (row->RecordCount() == 0 || !equalNoCase(fieldText(*row, "ReferenceID"), sender))
    refuse("There is no action " + std::to_string(action) + ".");
  if (!equalNoCase(fieldText(*row, "AssigneeID"), session.profile()->UserID()))
    session.requireAdministrator("only administrators may settle the actions of others");
  return row;
}

SettledAction settle(const Session& session, std::int32_t action, Step step,
                     const std::optional<Date>& on) {
  Transaction transaction(session);
  transaction.lock("Actions", "ActionID", std::int64_t{action});
  const auto row = findAction(session, action);
  const Variant completed = row->Fields("DateCompleted")->Value();
  const Variant closed = row->Fields("DateClosed")->Value();
  const std::string named = "The action " + std::to_string(action);
  if (!closed.isNull()) refuse(named + " was closed on " + isoText(toDate(closed)) + ".");
  if (step == Step::Complete && !completed.isNull())
    refuse(named + " was completed on " + isoText(toDate(completed)) + ".");
  const Date day = on.value_or(today());
  SettledAction settled{.completed = completed.isNull() ? day : toDate(completed), .closed = {}};
  if (step == Step::Close) settled.closed = day;
  session->CompleteCloseAction(std::to_string(action), settled.completed,
                               settled.closed ? Variant(*settled.closed) : Variant());
  transaction.commit();
  return settled;
}

}  // namespace

Ref<Recordset> listActions(const Session& session, const std::optional<std::string>& user,
                           bool closed) {
  const auto actions = session->GetActions(doubledQuotes(userToLookAt(session, user)), closed);
  AnswerSet answer({{"ActionID", kTypeInteger},
                    {"Subject", kTypeVarWChar},
                    {"Originator", kTypeVarWChar},
                    {"DateOpened", kTypeDate},
                    {"DateDue", kTypeDate},
                    {"DateCompleted", kTypeDate},
                    {"DateClosed", kTypeDate},
                    {"Reference", kTypeVarWChar},
                    {"Description", kTypeLongVarWChar}});
  for (; !actions->Eof(); actions->MoveNext()) {
    const auto value = [&](const char* column) { return actions->Fields(column)->Value(); };
    answer.add({value("ActionID"), value("Subject"), value("Originator"), value("DateOpened"),
                value("DateDue"), value("DateCompleted"), value("DateClosed"), value("Reference"),
                value("Description")});
  }
  return answer.take();
}

SettledAction completeAction(const Session& session, std::int32_t action,
                             const std::optional<Date>& on) {
  return settle(session, action, Step::Complete, on);
}

SettledAction closeAction(const Session& session, std::int32_t action,
                          const std::optional<Date>& on) {
  return settle(session, action, Step::Close, on);
}

}  // namespace kv::desk
