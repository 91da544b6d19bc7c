// SPDX-License-Identifier: Apache-2.0
#include <iostream>

#include "cli/answers/answer_set.h"
#include "cli/program/given_options.h"
#include "cli/program/verbs.h"
#include "desk/people/actions.h"

namespace kv::cli {

namespace {

enum class Step : std::uint8_t { Complete, Close };

template <Step step>
struct Settling : RegisterVerb {
  std::int32_t action = 0;
  std::optional<std::string> on;

  void describe(Command& verb) {
    addNumber(verb, "action", action, "The action's number, as 'kvvesk actions' lists it")
        ->required();
    addDate(verb, "--on", on, "The day; today when left out");
  }
  void run(const Session& session) const {
    const auto day = on ? parseDate(*on) : std::nullopt;
    const bool close = step == Step::Close;
    const auto settled = close ? desk::closeAction(session, action, day)
                               : desk::completeAction(session, action, day);
    writeDone(std::cout,
              (close ? "closed the action " : "completed the action ") + std::to_string(action),
              {{"ActionID", action},
               {"DateCompleted", settled.completed},
               {"DateClosed", settled.closed ? Variant(*settled.closed) : Variant(Null)}},
              options.format);
  }
};

}  // namespace

void actionComplete(Command& verb) { declare<Settling<Step::Complete>>(verb); }
void actionClose(Command& verb) { declare<Settling<Step::Close>>(verb); }

}  // namespace kv::cli
