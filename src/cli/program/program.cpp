// SPDX-License-Identifier: Apache-2.0
#include "cli/program/program.h"

#include "cli/program/command.h"
#include "cli/program/errors.h"
#include "cli/program/verb_table.h"
#include "kvvesk/version.h"

namespace kv::cli {

namespace {

class Program : public CommandLine {
 public:
  Program()
      : CommandLine("kvvesk",
                    "Keeps a controlled-document register: documents, revisions, manuals, users "
                    "and who holds what.",
                    kVersionText) {
    command().requireSubcommand();
    command().footer(
        "The register's answers go to standard output, everything else to standard error.\n"
        "Exit status: 0 done, 1 the register said no, 2 the command line makes no sense.");
    Command* whole = &command();  // the verb whose parts follow
    for (const auto& verb : verbs()) {
      const auto space = verb.name.find(' ');
      const bool isPart = space != std::string_view::npos;
      auto* added =
          (isPart ? whole : &command())
              ->addSubcommand(std::string(verb.name.substr(isPart ? space + 1 : 0)), verb.help);
      added->footer(verb.footer);
      if (verb.declare != nullptr) {
        verb.declare(*added);
      } else {
        added->requireSubcommand();
        whole = added;
      }
    }
  }
};

}  // namespace

int runProgram(const std::vector<std::string>& words) {
  std::vector<const char*> texts;
  texts.reserve(words.size());
  for (const auto& word : words) texts.push_back(word.c_str());
  Program program;
  int status = kDone;
  return program.parse(texts, status) ? program.run() : status;
}

CommandOutline programOutline() { return Program().command().outline(); }

}  // namespace kv::cli
