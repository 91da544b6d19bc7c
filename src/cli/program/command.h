// SPDX-License-Identifier: Apache-2.0
// The command line as the verbs see it. CLI11 parses it, in command.cpp alone: it is one large
// header, and compiling it with every verb took more than the rest of the program.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "cli/program/command_outline.h"

namespace CLI {  // NOLINT(*-identifier-naming): not ours
class App;
class Option;
}  // namespace CLI

namespace kv::cli {

// Thrown while a word is taken: what is wrong with it. The program says which option it was given
// for, and ends as for every command line that makes no sense.
class WrongWord : public std::invalid_argument {
 public:
  using std::invalid_argument::invalid_argument;
};

// An option or a positional word of a verb. The setters return the argument itself.
class Argument {
 public:
  explicit Argument(CLI::Option* option) noexcept : option_(option) {}

  Argument* required(bool required = true);
  // What stands for the value in help texts.
  Argument* typeName(const std::string& name);
  Argument* needs(const Argument* other);
  Argument* excludes(const Argument* other);
  // Help shows the value that the variable has before anything is parsed.
  Argument* showDefault();
  // May be given several times, each time with `words` words.
  Argument* repeated(std::size_t words = 1);
  Argument* existingFolder();
  [[nodiscard]] bool given() const;

 private:
  CLI::Option* option_;
};

// A verb, or the program itself. Variables handed in are set while the command line is parsed and
// must live until then. What the adders return lives as long as the command.
class Command {
 public:
  // `chosen` becomes what the verb does that was chosen.
  Command(CLI::App& app, std::function<int()>& chosen) noexcept;
  ~Command();
  Command(const Command&) = delete;
  Command& operator=(const Command&) = delete;
  Command(Command&&) = delete;
  Command& operator=(Command&&) = delete;

  Command* addSubcommand(const std::string& name, const std::string& help);
  // One of the subcommands must be named.
  void requireSubcommand();
  // Names that begin with a hyphen make an option, others a positional word.
  Argument* addOption(const std::string& name, std::string& value, const std::string& help);
  Argument* addOption(const std::string& name, std::vector<std::string>& values,
                      const std::string& help);
  // `take` gets each word given and may throw WrongWord.
  Argument* addOption(const std::string& name, std::function<void(const std::string&)> take,
                      const std::string& help);
  Argument* addFlag(const std::string& name, bool& value, const std::string& help);
  Argument* addFlag(const std::string& name, std::function<void()> take, const std::string& help);
  // Stands below the options in the help text; that of the program does where there is none.
  void footer(const std::string& text);
  // Help does not list it.
  void hide();
  // What this verb does when it was chosen and its words were taken; how the program ends then.
  void onRun(std::function<int()> run);
  // What has been added so far.
  [[nodiscard]] CommandOutline outline() const;

 private:
  Argument* keep(CLI::Option* option);

  CLI::App& app_;
  std::function<int()>& chosen_;
  std::vector<std::unique_ptr<Command>> subcommands_;
  std::vector<std::unique_ptr<Argument>> arguments_;
};

// The whole command line.
class CommandLine {
 public:
  CommandLine(const std::string& name, const std::string& description, const std::string& version);
  ~CommandLine();
  CommandLine(const CommandLine&) = delete;
  CommandLine& operator=(const CommandLine&) = delete;
  CommandLine(CommandLine&&) = delete;
  CommandLine& operator=(CommandLine&&) = delete;

  [[nodiscard]] Command& command() noexcept { return command_; }
  // True when a verb was chosen and is to run. Otherwise help was asked for and is printed, or the
  // words make no sense and why is printed; `status` is then how the program ends.
  [[nodiscard]] bool parse(const std::vector<const char*>& words, int& status);
  // Runs the verb that was chosen.
  [[nodiscard]] int run() const { return chosen_(); }

 private:
  std::unique_ptr<CLI::App> app_;
  std::function<int()> chosen_;
  Command command_;
};

}  // namespace kv::cli
