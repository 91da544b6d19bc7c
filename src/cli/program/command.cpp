// SPDX-License-Identifier: Apache-2.0
#include "cli/program/command.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <utility>

#include "cli/program/errors.h"
#include "common/path.h"

namespace kv::cli {

namespace {

// The options' own check reads paths in the code of the machine where that is not UTF-8.
std::string folderProblem(const std::string& folder) {
  std::error_code ignored;
  const auto status = std::filesystem::status(pathOf(folder), ignored);
  if (!std::filesystem::exists(status)) return "Directory does not exist: " + folder;
  if (!std::filesystem::is_directory(status)) return "Directory is actually a file: " + folder;
  return {};
}

}  // namespace

Argument* Argument::required(bool required) {
  option_->required(required);
  return this;
}

Argument* Argument::typeName(const std::string& name) {
  option_->type_name(name);
  return this;
}

Argument* Argument::needs(const Argument* other) {
  option_->needs(other->option_);
  return this;
}

Argument* Argument::excludes(const Argument* other) {
  option_->excludes(other->option_);
  return this;
}

Argument* Argument::showDefault() {
  option_->capture_default_str();
  return this;
}

Argument* Argument::repeated(std::size_t words) {
  option_->type_size(static_cast<int>(words))
      ->expected(1)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
      ->allow_extra_args(false);
  return this;
}

Argument* Argument::existingFolder() {
  option_->check(folderProblem, "DIR");
  return this;
}

bool Argument::given() const { return option_->count() > 0; }

Command::Command(CLI::App& app, std::function<int()>& chosen) noexcept
    : app_(app), chosen_(chosen) {}
Command::~Command() = default;

Command* Command::addSubcommand(const std::string& name, const std::string& help) {
  return subcommands_
      .emplace_back(std::make_unique<Command>(*app_.add_subcommand(name, help), chosen_))
      .get();
}

void Command::requireSubcommand() { app_.require_subcommand(1); }

Argument* Command::addOption(const std::string& name, std::string& value, const std::string& help) {
  return keep(app_.add_option(name, value, help));
}

Argument* Command::addOption(const std::string& name, std::vector<std::string>& values,
                             const std::string& help) {
  return keep(app_.add_option(name, values, help));
}

Argument* Command::addOption(const std::string& name, std::function<void(const std::string&)> take,
                             const std::string& help) {
  return keep(app_.add_option_function<std::string>(
      name,
      [take = std::move(take), name](const std::string& word) {
        try {
          take(word);
        } catch (const WrongWord& e) {
          throw CLI::ValidationError(name, e.what());
        }
      },
      help));
}

Argument* Command::addFlag(const std::string& name, bool& value, const std::string& help) {
  return keep(app_.add_flag(name, value, help));
}

Argument* Command::addFlag(const std::string& name, std::function<void()> take,
                           const std::string& help) {
  return keep(app_.add_flag_callback(name, std::move(take), help));
}

void Command::footer(const std::string& text) {
  if (!text.empty()) app_.footer(text);
}

void Command::hide() { app_.group(""); }

void Command::onRun(std::function<int()> run) {
  app_.callback([this, run = std::move(run)] { chosen_ = run; });
}

namespace {

ArgumentOutline outlineOf(const CLI::Option& option) {
  ArgumentOutline outline{.place = option.get_name(true),
                          .description = option.get_description(),
                          .shownDefault = option.get_default_str(),
                          .required = option.get_required()};
  for (const auto& name : option.get_snames()) outline.names.push_back("-" + name);
  for (const auto& name : option.get_lnames()) outline.names.push_back("--" + name);
  if (option.get_items_expected_max() > 0) outline.typeName = option.get_type_name();
  return outline;
}

CommandOutline outlineOf(const CLI::App& app, const std::string& path) {
  CommandOutline outline{.path = path,
                         .name = app.get_name(),
                         .description = app.get_description(),
                         .footer = app.get_footer()};
  // A verb that is given none has that of the program.
  if (app.get_parent() != nullptr && app.get_parent()->get_footer() == outline.footer)
    outline.footer.clear();
  for (const auto* option : app.get_options()) {
    if (option->get_group().empty()) continue;
    (option->nonpositional() ? outline.options : outline.positionals).push_back(outlineOf(*option));
  }
  for (const auto* part :
       app.get_subcommands([](const CLI::App* part) { return !part->get_group().empty(); }))
    outline.parts.push_back(outlineOf(*part, (path.empty() ? "" : path + " ") + part->get_name()));
  return outline;
}

}  // namespace

CommandOutline Command::outline() const { return outlineOf(app_, {}); }

Argument* Command::keep(CLI::Option* option) {
  return arguments_.emplace_back(std::make_unique<Argument>(option)).get();
}

namespace {

// One of the words may be a password, given here by mistake; it must not be repeated where errors
// are kept. So no more is told than the names of options.
[[noreturn]] void refuseExtras(const CLI::App& app) {
  std::string options;
  for (const auto& word : app.remaining(true))
    if (word.starts_with("-")) options += " " + word.substr(0, word.find('='));
  throw UsageError(options.empty() ? "there are more words than this takes; see --help"
                                   : "this does not take" + options + "; see --help");
}

}  // namespace

CommandLine::CommandLine(const std::string& name, const std::string& description,
                         const std::string& version)
    : app_(std::make_unique<CLI::App>(description, name)), command_(*app_, chosen_) {
  app_->allow_windows_style_options(false);  // one command line everywhere; "/..." is a path
  app_->set_version_flag("--version", name + " " + version);
}

CommandLine::~CommandLine() = default;

bool CommandLine::parse(const std::vector<const char*>& words, int& status) {
  try {
    app_->parse(static_cast<int>(words.size()), words.data());
    return true;
  } catch (const CLI::ExtrasError&) {
    refuseExtras(*app_);
  } catch (const CLI::ParseError& e) {
    status = app_->exit(e) == 0 ? kDone : kUsage;
    return false;
  }
}

}  // namespace kv::cli
