// SPDX-License-Identifier: Apache-2.0
#include <fcntl.h>
#include <io.h>
#include <windows.h>
// After windows.h, which it needs.
#include <shellapi.h>

#include <cstdio>
#include <memory>
#include <random>
#include <system_error>

#include "cli/program/system.h"
#include "cli/program/terminal.h"
#include "common/wide_text.h"

namespace kv::cli {

namespace {

bool isConsole(DWORD stream) {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(stream), &mode) != 0;
}

}  // namespace

// The run-time's own words are in the code page of the machine, with wildcards replaced.
std::vector<std::string> commandLine(int, char**) {
  int count = 0;
  const std::unique_ptr<LPWSTR, decltype(&LocalFree)> words(
      CommandLineToArgvW(GetCommandLineW(), &count), LocalFree);
  std::vector<std::string> out;
  for (int i = 0; i < count; ++i) {
    auto word = fromWide(words.get()[i]);
    if (!word) throw UsageError("a word of the command line is no text");
    out.push_back(std::move(*word));
  }
  return out;
}

std::optional<std::string> environment(const char* variable) {
  const auto name = toWide(variable);
  std::wstring value(GetEnvironmentVariableW(name->c_str(), nullptr, 0), L'\0');
  if (value.empty()) return {};
  value.resize(
      GetEnvironmentVariableW(name->c_str(), value.data(), static_cast<DWORD>(value.size())));
  auto text = fromWide(value);
  if (!text) throw UsageError(std::string("the value of ") + variable + " is no text");
  return text;
}

std::shared_ptr<void> plainStreams() {
  for (FILE* stream : {stdin, stdout, stderr}) _setmode(_fileno(stream), _O_BINARY);
  HANDLE errors = GetStdHandle(STD_ERROR_HANDLE);
  DWORD mode = 0;
  // Progress is shown with the codes of terminals.
  if (GetConsoleMode(errors, &mode) != 0)
    SetConsoleMode(errors, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
  const UINT before = GetConsoleOutputCP();
  SetConsoleOutputCP(CP_UTF8);
  // The console is the caller's, who goes on using it.
  return {nullptr, [before](void*) { SetConsoleOutputCP(before); }};
}

bool inputIsTerminal() { return isConsole(STD_INPUT_HANDLE); }
bool errorsAreTerminal() { return isConsole(STD_ERROR_HANDLE); }

std::string hiddenLine() {
  HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
  DWORD before = 0;
  GetConsoleMode(input, &before);
  SetConsoleMode(input, before & ~static_cast<DWORD>(ENABLE_ECHO_INPUT));
  std::wstring line;
  wchar_t next = 0;
  // Only the wide call gives every letter, whatever the code page.
  for (DWORD read = 0; ReadConsoleW(input, &next, 1, &read, nullptr) != 0 && read == 1;) {
    if (next == L'\n') break;
    if (next != L'\r') line += next;
  }
  SetConsoleMode(input, before);
  const auto text = fromWide(line);
  if (!text) throw UsageError("what was typed is no text");
  return *text;
}

std::optional<std::filesystem::path> folderBeside(const std::filesystem::path& place) {
  std::random_device random;
  constexpr int kAttempts = 100;
  for (int i = 0; i < kAttempts; ++i) {
    std::filesystem::path folder = place;
    folder += "." + std::to_string(random());
    std::error_code problem;
    if (std::filesystem::create_directory(folder, problem)) return folder;
    if (problem) break;
  }
  return {};
}

// A folder takes no other folder's place here, not even an empty one's.
void moveFolder(const std::filesystem::path& from, const std::filesystem::path& to) {
  std::filesystem::remove(to);
  std::filesystem::rename(from, to);
}

}  // namespace kv::cli
