#include <fmt/format.h>

#include <iostream>

#include "cli/program/program.h"
#include "cli/program/verbs.h"

namespace kv::cli {

namespace {

void append(std::string& list, const std::string& word) {
  if (!list.empty()) list += ' ';
  list += word;
}

// What the shell offers behind one command: an alternative of the script's case. Names of verbs and
// options have nothing in them that the shell would read otherwise.
void writeAlternative(std::ostream& out, const CommandOutline& command) {
  std::string parts, options, valued;
  for (const auto& part : command.parts) append(parts, part.name);
  for (const auto& option : command.options)
    for (const auto& name : option.names) {
      append(options, name);
      if (!option.typeName.empty()) append(valued, name);
    }
  out << fmt::format("      '{}') parts='{}' options='{}' valued='{}' ;;\n", command.path, parts,
                     options, valued);
  for (const auto& part : command.parts) writeAlternative(out, part);
}

void writeForBash(std::ostream& out, const CommandOutline& program) {
  out << R"(# Completes kvvesk in bash. Written by the program itself:
#   source <(kvvesk completion bash)
_kvvesk() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
  local command='' place=1 parts options valued
  COMPREPLY=()
  while :; do
    parts='' options='' valued=''
    case $command in
)";
  writeAlternative(out, program);
  out << R"(    esac
    [[ -n $parts && $place -lt $COMP_CWORD ]] || break
    command="${command:+$command }${COMP_WORDS[place]}"
    place=$((place + 1))
  done
  # What follows is the shell's to complete: as the name of a file.
  [[ " $valued " != *" $before "* ]] || return 0
  [[ -n $parts || $word == -* ]] || return 0
  mapfile -t COMPREPLY < <(compgen -W "$parts $options" -- "$word")
}
complete -o default -F _kvvesk kvvesk
)";
}

struct Completion {
  std::string shell;

  void describe(Command& verb) {
    verb.addOption("shell", shell, "The shell: bash")->required()->typeName("SHELL");
  }
  [[nodiscard]] int run() const {
    if (shell != "bash") throw UsageError("there is completion for bash, not for '" + shell + "'");
    writeForBash(std::cout, programOutline());
    return kDone;
  }
};

}  // namespace

void programCompletion(Command& verb) { declare<Completion>(verb); }

}  // namespace kv::cli
