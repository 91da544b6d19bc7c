// SPDX-License-Identifier: Apache-2.0
// What systems do each in their own way. Text is UTF-8 here as everywhere.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kv::cli {

// The words of the command line, the program's own name first. Raises UsageError for a word that is
// no text.
[[nodiscard]] std::vector<std::string> commandLine(int argc, char** argv);

// Nothing where the variable is not set.
[[nodiscard]] std::optional<std::string> environment(const char* variable);

// While the answer is kept, the standard streams carry what the program writes byte by byte, and a
// terminal shows it as UTF-8.
[[nodiscard]] std::shared_ptr<void> plainStreams();

[[nodiscard]] bool inputIsTerminal();
[[nodiscard]] bool errorsAreTerminal();
// A line from the terminal, not shown as it is typed.
[[nodiscard]] std::string hiddenLine();

// A new folder beside another one, with a name that begins like its. Nothing where none can be
// made.
[[nodiscard]] std::optional<std::filesystem::path> folderBeside(const std::filesystem::path& place);
// Moves a folder to a place where there is nothing, or an empty folder.
void moveFolder(const std::filesystem::path& from, const std::filesystem::path& to);

}  // namespace kv::cli
