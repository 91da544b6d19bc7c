// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include <array>
#include <iostream>
#include <string_view>

#include "cli/program/program.h"
#include "cli/program/verbs.h"

namespace kv::cli {

namespace {

void append(std::string& list, const std::string& word) {
  if (!list.empty()) list += ' ';
  list += word;
}

// A text between apostrophes, as the shell takes it: `escaped` stands for an apostrophe in it.
std::string quoted(const std::string& text, std::string_view escaped) {
  std::string out = "'";
  for (const char c : text) {
    if (c == '\'')
      out += escaped;
    else
      out += c;
  }
  return out + "'";
}

// What may stand behind a command: its parts, its options, and those of them that take a value.
// Names of verbs and options have nothing in them that a shell would read otherwise.
struct Offered {
  explicit Offered(const CommandOutline& command) {
    for (const auto& part : command.parts) append(parts, part.name);
    for (const auto& option : command.options)
      for (const auto& name : option.names) {
        append(options, name);
        if (!option.typeName.empty()) append(valued, name);
      }
  }

  std::string parts;
  std::string options;
  std::string valued;
};

// ---- bash and zsh ----

// An alternative of the script's case.
void writeAlternative(std::ostream& out, const CommandOutline& command) {
  const Offered offered(command);
  out << fmt::format("      '{}') parts='{}' options='{}' valued='{}' ;;\n", command.path,
                     offered.parts, offered.options, offered.valued);
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

// In zsh every word stands with what it means. A variable called options is the shell's own there.
void writeAlternativeOfZsh(std::ostream& out, const CommandOutline& command) {
  out << fmt::format("      '{}') valued='{}'\n        parts=(", command.path,
                     Offered(command).valued);
  for (const auto& part : command.parts)
    out << ' ' << quoted(part.name + ':' + part.description, R"('\'')");
  out << " )\n        flags=(";
  for (const auto& option : command.options)
    for (const auto& name : option.names)
      out << ' ' << quoted(name + ':' + option.description, R"('\'')");
  out << " ) ;;\n";
  for (const auto& part : command.parts) writeAlternativeOfZsh(out, part);
}

void writeForZsh(std::ostream& out, const CommandOutline& program) {
  out << R"(#compdef kvvesk
# Completes kvvesk in zsh. Written by the program itself:
#   source <(kvvesk completion zsh)
_kvvesk() {
  local command='' valued='' place=2
  local -a parts flags
  while :; do
    parts=() flags=() valued=''
    case $command in
)";
  writeAlternativeOfZsh(out, program);
  out << R"(    esac
    (( $#parts && place < CURRENT )) || break
    command="${command:+$command }${words[place]}"
    (( ++place ))
  done
  if [[ " $valued " == *" ${words[CURRENT-1]} "* ]]; then
    _files
  elif (( $#parts )); then
    _describe -t commands 'command' parts -- flags
  elif [[ ${words[CURRENT]} == -* ]]; then
    _describe -t options 'option' flags
  else
    _files
  fi
}
if [[ ${funcstack[1]} == _kvvesk ]]; then
  _kvvesk "$@"
else
  compdef _kvvesk kvvesk
fi
)";
}

// ---- fish ----

void writeLinesOfFish(std::ostream& out, const CommandOutline& command) {
  const std::string here = fmt::format("complete -c kvvesk -n \"__kvvesk_at '{}'\"", command.path);
  for (const auto& part : command.parts)
    out << here << " -f -a " << part.name << " -d " << quoted(part.description, R"(\')") << '\n';
  for (const auto& option : command.options) {
    out << here;
    for (const auto& name : option.names)
      out << (name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1));
    out << (option.typeName.empty() ? "" : " -r") << " -d " << quoted(option.description, R"(\')")
        << '\n';
  }
  for (const auto& part : command.parts) writeLinesOfFish(out, part);
}

void writeGroupsOfFish(std::ostream& out, const CommandOutline& command) {
  if (!command.parts.empty()) out << " '" << command.path << '\'';
  for (const auto& part : command.parts) writeGroupsOfFish(out, part);
}

void writeForFish(std::ostream& out, const CommandOutline& program) {
  out << R"(# Completes kvvesk in fish. Written by the program itself:
#   kvvesk completion fish | source
set -g __kvvesk_groups)";
  writeGroupsOfFish(out, program);
  out << R"(
function __kvvesk_at --description 'Whether this command has been typed'
  set -l words (commandline -opc)
  set -e words[1]
  set -l command ''
  while contains -- "$command" $__kvvesk_groups; and set -q words[1]
    set command (string trim -- "$command $words[1]")
    set -e words[1]
  end
  test "$command" = "$argv[1]"
end
)";
  writeLinesOfFish(out, program);
}

// ---- PowerShell ----

void writeEntriesOfPowerShell(std::ostream& out, const CommandOutline& command) {
  out << fmt::format("  '{}' = @{{ Valued = '{}'; Words = @(", command.path,
                     Offered(command).valued);
  const char* between = "";
  const auto entry = [&](const std::string& name, const std::string& meaning) {
    out << fmt::format("{}@('{}', {})", between, name, quoted(meaning, "''"));
    between = ", ";
  };
  for (const auto& part : command.parts) entry(part.name, part.description);
  for (const auto& option : command.options)
    for (const auto& name : option.names) entry(name, option.description);
  out << "); Group = $" << (command.parts.empty() ? "false" : "true") << " }\n";
  for (const auto& part : command.parts) writeEntriesOfPowerShell(out, part);
}

void writeForPowerShell(std::ostream& out, const CommandOutline& program) {
  out << R"ps(# Completes kvvesk in PowerShell. Written by the program itself:
#   kvvesk completion powershell | Out-String | Invoke-Expression
$script:KvVeskCommands = @{
)ps";
  writeEntriesOfPowerShell(out, program);
  out << R"ps(}
Register-ArgumentCompleter -Native -CommandName kvvesk -ScriptBlock {
  param($word, $line, $cursor)
  $typed = @($line.CommandElements | Where-Object { $_.Extent.EndOffset -lt $cursor } | ForEach-Object { "$_" })
  $command = ''
  $place = 1
  while ($place -lt $typed.Count -and $script:KvVeskCommands.ContainsKey($command) -and
         $script:KvVeskCommands[$command].Group) {
    $command = "$command $($typed[$place])".Trim()
    $place++
  }
  if (-not $script:KvVeskCommands.ContainsKey($command)) { return }
  $known = $script:KvVeskCommands[$command]
  # What follows is the shell's to complete: as the name of a file.
  if (($known.Valued -split ' ') -ccontains $typed[-1]) { return }
  if (-not ($known.Group -or $word.StartsWith('-'))) { return }
  $known.Words | Where-Object { $_[0].StartsWith($word) } | ForEach-Object {
    [System.Management.Automation.CompletionResult]::new($_[0], $_[0], 'ParameterValue', $_[1])
  }
}
)ps";
}

struct Shell {
  std::string_view name;
  void (*write)(std::ostream& out, const CommandOutline& program);
};
constexpr std::array kShells{Shell{"bash", writeForBash}, Shell{"zsh", writeForZsh},
                             Shell{"fish", writeForFish}, Shell{"powershell", writeForPowerShell}};

const Shell& shellNamed(const std::string& name) {
  for (const auto& shell : kShells)
    if (shell.name == name) return shell;
  throw UsageError("there is completion for bash, zsh, fish and powershell, not for '" + name +
                   "'");
}

struct Completion {
  std::string shell;

  void describe(Command& verb) {
    verb.addOption("shell", shell, "The shell: bash, zsh, fish or powershell")
        ->required()
        ->typeName("SHELL");
  }
  [[nodiscard]] int run() const {
    shellNamed(shell).write(std::cout, programOutline());
    return kDone;
  }
};

}  // namespace

void programCompletion(Command& verb) { declare<Completion>(verb); }

}  // namespace kv::cli
