// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include <iostream>
#include <map>
#include <sstream>

#include "cli/program/program.h"
#include "cli/program/terminal.h"
#include "cli/program/verbs.h"
#include "kvvesk/version.h"

namespace kv::cli {

namespace {

// Text as the formatter takes it: no character is an escape, dashes are those that are typed, and
// no line is a request.
std::string plain(const std::string& text) {
  std::string out;
  for (const char c : text) {
    if (c == '\\')
      out += "\\e";
    else if (c == '-')
      out += "\\-";
    else
      out += c;
  }
  if (out.starts_with('.') || out.starts_with('\'')) out.insert(0, "\\&");
  return out;
}

std::string bold(const std::string& text) { return "\\fB" + plain(text) + "\\fR"; }
std::string italic(const std::string& text) { return "\\fI" + plain(text) + "\\fR"; }

// An option or word as it is typed: what stands for itself is bold, what stands for something else
// italic.
std::string typed(const ArgumentOutline& option) {
  if (option.names.empty()) return italic(option.place);
  std::string out;
  for (const auto& name : option.names) out += (out.empty() ? "" : ", ") + bold(name);
  if (!option.typeName.empty()) out += " " + italic(option.typeName);
  return out;
}

void writeItem(std::ostream& out, const ArgumentOutline& option) {
  out << ".TP\n" << typed(option) << '\n' << plain(option.description);
  if (!option.shownDefault.empty()) out << " (" << plain(option.shownDefault) << ')';
  out << '\n';
}

// A text that the help breaks into lines: only where a sentence ends is the end of a line meant.
void writeLines(std::ostream& out, const std::string& text) {
  out << ".PP\n";
  std::istringstream lines(text);
  bool ended = false;
  for (std::string line; std::getline(lines, line);) {
    out << (ended ? ".br\n" : "") << plain(line) << '\n';
    ended = line.ends_with('.') || line.ends_with(':');
  }
}

// Options are the same for nearly every command when they have the same names and the same text;
// the page describes them once.
class CommonOptions {
 public:
  explicit CommonOptions(const std::vector<CommandOutline>& commands)
      : enough_(commands.size() / 2) {
    for (const auto& command : commands)
      for (const auto* kind : {&command.options, &command.positionals})
        for (const auto& option : *kind)
          if (++seen_[key(option)] == 1) order_.push_back(option);
  }

  [[nodiscard]] bool contain(const ArgumentOutline& option) const {
    const auto found = seen_.find(key(option));
    return found != seen_.end() && found->second > enough_;
  }
  void write(std::ostream& out) const {
    for (const auto& option : order_)
      if (contain(option)) writeItem(out, option);
  }

 private:
  static std::string key(const ArgumentOutline& option) {
    return (option.names.empty() ? option.place : option.names.back()) + '\n' + option.description;
  }

  std::size_t enough_;
  std::map<std::string, std::size_t> seen_;
  std::vector<ArgumentOutline> order_;
};

// What can be run: verbs that have no parts, and the parts of the others.
void addCommands(const CommandOutline& verb, std::vector<CommandOutline>& commands) {
  if (verb.parts.empty()) commands.push_back(verb);
  for (const auto& part : verb.parts) addCommands(part, commands);
}

// How a command is typed.
std::string synopsis(const CommandOutline& command) {
  const std::string name = "kvvesk " + plain(command.path);
  std::string out = ".B " + name + "\n[\\fIoptions\\fR]";
  for (const auto& word : command.positionals)
    out += ' ' + (word.required ? typed(word) : "[" + typed(word) + "]");
  return out + '\n';
}

void writeArguments(std::ostream& out, const CommandOutline& command, const CommonOptions* common) {
  for (const auto* kind : {&command.positionals, &command.options})
    for (const auto& argument : *kind)
      if (common == nullptr || !common->contain(argument)) writeItem(out, argument);
}

void writeCommand(std::ostream& out, const CommandOutline& command, const CommonOptions& common) {
  out << ".SS \"kvvesk " << plain(command.path) << "\"\n"
      << synopsis(command) << ".PP\n"
      << plain(command.description) << ".\n";
  writeArguments(out, command, &common);
  if (!command.footer.empty()) writeLines(out, command.footer);
}

void writeCommands(std::ostream& out, const std::vector<CommandOutline>& commands,
                   const CommonOptions& common, const std::string& of) {
  out << ".SH COMMON OPTIONS\nThese are the same for nearly every command" << of << ".\n";
  common.write(out);
  out << ".SH COMMANDS\n";
  for (const auto& command : commands) writeCommand(out, command, common);
}

void writeEnvironment(std::ostream& out) {
  out << ".SH ENVIRONMENT\n"
      << ".TP\n.B KVVESK_PASSWORD\nThe password of who logs in. It is asked for at the terminal "
         "when this is not set.\n"
      << ".TP\n.B KVVESK_NEW_PASSWORD\nThe password that a user is given by the commands that give "
         "one; asked for likewise.\n";
}

std::string capitals(std::string name) {
  for (char& c : name)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return name;
}

void writeTitle(std::ostream& out, const std::string& name, const std::string& purpose) {
  out << fmt::format(".TH {} 1 \"\" \"kvvesk {}\" \"User Commands\"\n", plain(capitals(name)),
                     plain(kVersionText))
      << ".SH NAME\n"
      << plain(name) << " \\- " << plain(purpose) << '\n';
}

void writePage(std::ostream& out, const CommandOutline& program) {
  std::vector<CommandOutline> commands;
  addCommands(program, commands);
  const CommonOptions common(commands);
  writeTitle(out, "kvvesk", "keep a register of controlled documents");
  out << ".SH SYNOPSIS\n.B kvvesk\n\\fIcommand\\fR [\\fIoptions\\fR] \\fIregister\\fR ...\n"
      << ".SH DESCRIPTION\n"
      << plain(program.description) << '\n';
  writeLines(out, program.footer);
  writeCommands(out, commands, common, "");
  writeEnvironment(out);
  out << ".SH SEE ALSO\nEach command has a page of its own:\n";
  for (std::size_t i = 0; i < program.parts.size(); ++i)
    out << ".BR kvvesk\\-" << plain(program.parts[i].name)
        << (i + 1 < program.parts.size() ? " (1),\n" : " (1)\n");
}

// The page of one verb, all its parts included.
void writePageOf(std::ostream& out, const CommandOutline& verb) {
  writeTitle(out, "kvvesk-" + verb.name, verb.description);
  out << ".SH SYNOPSIS\n";
  std::vector<CommandOutline> commands;
  addCommands(verb, commands);
  for (std::size_t i = 0; i < commands.size(); ++i)
    out << (i == 0 ? "" : ".br\n") << synopsis(commands[i]);
  out << ".SH DESCRIPTION\n" << plain(verb.description) << ".\n";
  if (!verb.footer.empty()) writeLines(out, verb.footer);
  if (verb.parts.empty()) {
    out << ".SH OPTIONS\n";
    writeArguments(out, verb, nullptr);
  } else {
    writeCommands(out, commands, CommonOptions(commands), " below");
  }
  writeEnvironment(out);
  out << ".SH SEE ALSO\n.BR kvvesk (1)\n";
}

void writePageNamed(std::ostream& out, const CommandOutline& program, const std::string& name) {
  for (const auto& verb : program.parts)
    if (verb.name == name) return writePageOf(out, verb);
  throw UsageError("there is no command '" + name + "'");
}

struct ManualPage {
  std::string command;

  void describe(Command& verb) {
    verb.hide();  // for who builds and installs the program
    verb.addOption("command", command, "The command")->typeName("COMMAND");
  }
  [[nodiscard]] int run() const {
    if (command.empty())
      writePage(std::cout, programOutline());
    else
      writePageNamed(std::cout, programOutline(), command);
    return kDone;
  }
};

}  // namespace

void programManualPage(Command& verb) { declare<ManualPage>(verb); }

}  // namespace kv::cli
