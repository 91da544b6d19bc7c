#include "cli/command_tree.h"

namespace kv::cli {

std::vector<const CLI::App*> partsOf(const CLI::App& app) {
  return app.get_subcommands([](const CLI::App* part) { return !part->get_group().empty(); });
}

std::vector<const CLI::App*> commandsOf(const CLI::App& app) {
  const auto parts = partsOf(app);
  if (parts.empty()) return {&app};
  std::vector<const CLI::App*> commands;
  for (const auto* part : parts)
    for (const auto* command : commandsOf(*part)) commands.push_back(command);
  return commands;
}

std::string pathOf(const CLI::App& app) {
  if (app.get_parent() == nullptr) return {};
  const std::string above = pathOf(*app.get_parent());
  return (above.empty() ? "" : above + " ") + app.get_name();
}

std::vector<const CLI::Option*> optionsOf(const CLI::App& app) {
  return app.get_options([](const CLI::Option* option) {
    return option->nonpositional() && !option->get_group().empty();
  });
}

std::vector<const CLI::Option*> positionalsOf(const CLI::App& app) {
  return app.get_options([](const CLI::Option* option) { return option->get_positional(); });
}

std::vector<std::string> namesOf(const CLI::Option& option) {
  std::vector<std::string> names;
  for (const auto& name : option.get_snames()) names.push_back("-" + name);
  for (const auto& name : option.get_lnames()) names.push_back("--" + name);
  return names;
}

bool takesValue(const CLI::Option& option) { return option.get_items_expected_max() > 0; }

}  // namespace kv::cli
