// The command line as it is put together, for what is written about it: completion and the manual
// page.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace kv::cli {

// The verbs of the program or the parts of a verb that its help lists.
[[nodiscard]] std::vector<const CLI::App*> partsOf(const CLI::App& app);
// Verbs that have no parts, and parts of verbs: what can be run.
[[nodiscard]] std::vector<const CLI::App*> commandsOf(const CLI::App& app);
// "document show"; empty for the program itself.
[[nodiscard]] std::string pathOf(const CLI::App& app);

// Options proper, with dashes, and what is told apart by its place.
[[nodiscard]] std::vector<const CLI::Option*> optionsOf(const CLI::App& app);
[[nodiscard]] std::vector<const CLI::Option*> positionalsOf(const CLI::App& app);
// An option's names with their dashes, the short ones first.
[[nodiscard]] std::vector<std::string> namesOf(const CLI::Option& option);
// Whether words follow that belong to the option.
[[nodiscard]] bool takesValue(const CLI::Option& option);

}  // namespace kv::cli
