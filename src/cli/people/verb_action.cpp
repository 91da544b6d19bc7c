#include <iostream>

#include "cli/answers/answer_set.h"
#include "cli/program/client_transaction.h"
#include "cli/program/given_options.h"
#include "cli/program/verbs.h"
#include "common/clock.h"
#include "common/convert.h"
#include "common/error.h"
#include "common/text.h"
#include "kvdata/recordset/text_field.h"
#include "kvdata/table_value.h"

namespace kv::cli {

namespace {

enum class Step : std::uint8_t { Complete, Close };

[[noreturn]] void refuse(const std::string& why) { throw Error(kInvalidCall, "kvvesk", why); }

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

int settle(const Options& options, std::int32_t action, Step step,
           const std::optional<std::string>& on) {
  const Session session(options);
  ClientTransaction transaction(session);
  transaction.lock("Actions", "ActionID", std::int64_t{action});
  const auto row = findAction(session, action);
  const Variant completed = row->Fields("DateCompleted")->Value();
  const Variant closed = row->Fields("DateClosed")->Value();
  const std::string named = "action " + std::to_string(action);
  if (!closed.isNull()) refuse("The " + named + " was closed on " + isoText(toDate(closed)) + ".");
  if (step == Step::Complete && !completed.isNull())
    refuse("The " + named + " was completed on " + isoText(toDate(completed)) + ".");
  const Date day = on ? *parseDate(*on) : today();
  // What is closed has been completed, on that day at the latest.
  const Date done = completed.isNull() ? day : toDate(completed);
  const bool close = step == Step::Close;
  session->CompleteCloseAction(std::to_string(action), done, close ? Variant(day) : Variant());
  transaction.commit();
  writeDone(std::cout, (close ? "closed the " : "completed the ") + named,
            {{"ActionID", action},
             {"DateCompleted", done},
             {"DateClosed", close ? Variant(day) : Variant(Null)}},
            options.format);
  return kDone;
}

template <Step step>
struct Settling : RegisterVerb {
  std::int32_t action = 0;
  std::optional<std::string> on;

  void describe(Command& verb) {
    addNumber(verb, "action", action, "The action's number, as 'kvvesk actions' lists it")
        ->required();
    addDate(verb, "--on", on, "The day; today when left out");
  }
  [[nodiscard]] int run() const { return settle(options, action, step, on); }
};

}  // namespace

void actionComplete(Command& verb) { declare<Settling<Step::Complete>>(verb); }
void actionClose(Command& verb) { declare<Settling<Step::Close>>(verb); }

}  // namespace kv::cli
