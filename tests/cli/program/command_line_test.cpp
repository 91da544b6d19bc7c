// SPDX-License-Identifier: Apache-2.0
// What is written from the command line itself: completion for the shell and the manual page.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <functional>
#include <memory>
#include <sstream>

#include "cli/help_text.h"
#include "cli/program.h"
#include "support/temp_folder.h"
#include "support/test_server.h"

namespace kv {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;
using testing::UnorderedElementsAre;
using Names = std::set<std::string>;

// What a shell command prints, errors included.
std::string answerOf(const std::string& command) {
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen((command + " 2>&1").c_str(), "r"), pclose);
  EXPECT_NE(pipe, nullptr);
  std::string out;
  std::array<char, 4096> block{};
  while (const auto read = fread(block.data(), 1, block.size(), pipe.get()))
    out.append(block.data(), read);
  return out;
}

// Neither asks a register.
class CommandLine : public testing::Test {
 protected:
  void SetUp() override { FILES_ONLY(); }

  static std::string helpOf(const std::string& command) {
    std::vector<std::string> words;
    std::istringstream parts(command);
    for (std::string part; parts >> part;) words.push_back(part);
    words.emplace_back("--help");
    const auto outcome = test::run(words);
    EXPECT_EQ(outcome.code, 0) << command;
    return outcome.out;
  }
  // Every verb without parts and every part of a verb.
  static std::vector<std::string> commands() {
    std::vector<std::string> out;
    for (const auto& verb : test::listedIn(helpOf(""), "Subcommands:")) {
      const auto parts = test::listedIn(helpOf(verb), "Subcommands:");
      if (parts.empty()) out.push_back(verb);
      for (const auto& part : parts) out.push_back(verb + " " + part);
    }
    return out;
  }
};

class Completion : public CommandLine {
 protected:
  Completion() {
    const auto outcome = test::run({"completion", "bash"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.err, "");
    test::write(folder_.file("kvvesk.bash"), outcome.out);
  }

  // What bash offers for the last of these words. Each further line is a question of its own, so
  // that many of them take one shell.
  [[nodiscard]] std::vector<Names> offered(const std::vector<std::string>& lines) const {
    std::string script = "set -eu\nsource '" + folder_.file("kvvesk.bash") + "'\n";
    for (const auto& line : lines)
      script += "COMP_WORDS=(kvvesk " + line +
                ")\nCOMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n_kvvesk\necho \"${COMPREPLY[*]-}\"\n";
    test::write(folder_.file("ask"), script);
    std::istringstream answers(answerOf("bash '" + folder_.file("ask") + "'"));
    std::vector<Names> out;
    for (std::string answer; std::getline(answers, answer);) {
      std::istringstream words(answer);
      Names names;
      for (std::string word; words >> word;) names.insert(word);
      out.push_back(std::move(names));
    }
    EXPECT_EQ(out.size(), lines.size());
    out.resize(lines.size());
    return out;
  }
  [[nodiscard]] Names offeredFor(const std::string& line) const { return offered({line})[0]; }

 private:
  test::TempFolder folder_;
};

TEST_F(Completion, OffersTheVerbs) {
  EXPECT_THAT(offeredFor("''"), IsSupersetOf(test::listedIn(helpOf(""), "Subcommands:")));
  EXPECT_THAT(offeredFor("docu"), UnorderedElementsAre("document", "documents"));
  EXPECT_THAT(offeredFor("--v"), UnorderedElementsAre("--version"));
  EXPECT_THAT(offeredFor("frob"), IsEmpty());
  EXPECT_THAT(offeredFor("frob --"), IsEmpty());
  EXPECT_THAT(offeredFor("man"), Not(testing::Contains("manpage"))) << "which nobody is to run";
}

TEST_F(Completion, OffersThePartsAndOptionsThatTheHelpLists) {
  std::vector<std::string> lines;
  std::vector<Names> expected;
  for (const auto& verb : test::listedIn(helpOf(""), "Subcommands:")) {
    const auto parts = test::listedIn(helpOf(verb), "Subcommands:");
    if (parts.empty()) continue;
    lines.push_back(verb + " ''");
    expected.push_back(parts);
    expected.back().insert({"--help", "-h"});
  }
  const std::size_t verbs = lines.size();
  EXPECT_GT(verbs, 5U);
  for (const auto& command : commands()) {
    lines.push_back(command + " --");
    expected.push_back(test::listedIn(helpOf(command), "Options:"));
  }
  EXPECT_GT(lines.size() - verbs, 50U);
  const auto answers = offered(lines);
  for (std::size_t i = 0; i < lines.size(); ++i) EXPECT_EQ(answers[i], expected[i]) << lines[i];
}

TEST_F(Completion, LeavesRegistersAndValuesToTheShell) {
  EXPECT_THAT(offeredFor("documents qual"), IsEmpty());
  EXPECT_THAT(offeredFor("documents --query ''"), IsEmpty());
  EXPECT_THAT(offeredFor("documents --query --"), IsEmpty());
  EXPECT_THAT(offeredFor("documents --csv --q"), UnorderedElementsAre("--query"));
  EXPECT_THAT(offeredFor("document show q.kvv --cs"), UnorderedElementsAre("--csv"));
  EXPECT_THAT(offeredFor("document show q.kvv -u Keeper --js"), UnorderedElementsAre("--json"));
}

TEST_F(Completion, IsThereForFourShells) {
  const auto other = test::run({"completion", "csh"});
  EXPECT_EQ(other.code, 2);
  EXPECT_EQ(other.err,
            "kvvesk: there is completion for bash, zsh, fish and powershell, not for 'csh'\n");
  EXPECT_EQ(test::run({"completion"}).code, 2);
}

// Asks another shell for the words that it offers behind each line, all in one run of it.
class OtherShells : public CommandLine {
 protected:
  // `ask` writes what has the shell print the words behind a line, one on each line.
  std::vector<Names> offered(const std::string& shell, const std::string& before,
                             const std::function<std::string(const std::string&)>& ask,
                             const std::vector<std::string>& lines) {
    const auto script = test::run({"completion", shell});
    EXPECT_EQ(script.code, 0);
    std::string text = before + script.out;
    for (const auto& line : lines) text += "\n" + ask(line) + "\necho '=='\n";
    test::write(folder_.file("script"), text);
    std::istringstream answer(answerOf(shell + " '" + folder_.file("script") + "'"));
    std::vector<Names> out(1);
    for (std::string line; std::getline(answer, line);)
      if (line == "==")
        out.emplace_back();
      else
        out.back().insert(line.substr(0, line.find('\t')));
    EXPECT_EQ(out.size(), lines.size() + 1);
    out.resize(lines.size());
    return out;
  }
  // What every shell is to offer, by line. A shell may keep one of two names of an option to
  // itself.
  static std::vector<std::pair<std::string, Names>> expected() {
    std::vector<std::pair<std::string, Names>> out;
    out.emplace_back("kvvesk ", test::listedIn(helpOf(""), "Subcommands:"));
    for (const auto& command : commands())
      out.emplace_back("kvvesk " + command + " --", test::listedIn(helpOf(command), "Options:"));
    EXPECT_GT(out.size(), 50U);
    return out;
  }
  static Names longOnes(const Names& names) {
    Names out;
    for (const auto& name : names)
      if (!name.starts_with('-') || name.starts_with("--")) out.insert(name);
    return out;
  }
  void expectOffers(const std::string& shell, const std::string& before,
                    const std::function<std::string(const std::string&)>& ask) {
    const auto wanted = expected();
    std::vector<std::string> lines;
    lines.reserve(wanted.size());
    for (const auto& [line, words] : wanted) lines.push_back(line);
    const auto answers = offered(shell, before, ask, lines);
    for (std::size_t i = 0; i < wanted.size(); ++i)
      EXPECT_EQ(longOnes(answers[i]), longOnes(wanted[i].second)) << lines[i];
  }

 private:
  test::TempFolder folder_;
};

TEST_F(OtherShells, FishOffersVerbsPartsAndOptions) {
  if (answerOf("command -v fish").empty()) GTEST_SKIP() << "there is no fish here";
  // Without a dash it offers no options.
  expectOffers("fish", "", [](const std::string& line) { return "complete -C '" + line + "'"; });
}

// zsh completes at a terminal only; here its own words for it print what they are given.
TEST_F(OtherShells, ZshOffersVerbsPartsAndOptions) {
  if (answerOf("command -v zsh").empty()) GTEST_SKIP() << "there is no zsh here";
  expectOffers("zsh", R"(
compdef() { :; }
_files() { :; }
_describe() {
  local word
  for word in ${(P)4}; do print -r -- "${word%%:*}"; done
}
)",
               [](const std::string& line) {
                 return "words=(" + line + (line.ends_with(' ') ? "''" : "") +
                        "); CURRENT=$#words; _kvvesk";
               });
}

// There is none to run here: what it reads is looked at.
TEST_F(OtherShells, PowerShellIsToldVerbsPartsAndOptions) {
  const auto script = test::run({"completion", "powershell"});
  ASSERT_EQ(script.code, 0);
  for (const auto& [line, words] : expected()) {
    auto command = line.substr(std::string("kvvesk ").size());
    if (command.ends_with(" --")) command.resize(command.size() - 3);
    const auto at = script.out.find("\n  '" + command + "' = @{ ");
    ASSERT_NE(at, std::string::npos) << line;
    const auto entry = script.out.substr(at + 1, script.out.find('\n', at + 1) - at - 1);
    for (const auto& word : words) EXPECT_THAT(entry, HasSubstr("@('" + word + "', '")) << line;
  }
}

using ManualPage = CommandLine;

// As it is typed, in the page's own spelling.
std::string dashed(std::string name) {
  for (std::size_t at = 0; (at = name.find('-', at)) != std::string::npos; at += 2)
    name.insert(at, 1, '\\');
  return name;
}

TEST_F(ManualPage, DescribesEveryCommandWithItsOptions) {
  const auto page = test::run({"manpage"});
  ASSERT_EQ(page.code, 0);
  EXPECT_EQ(page.err, "");
  EXPECT_TRUE(page.out.starts_with(".TH KVVESK 1 ")) << page.out.substr(0, 100);
  for (const char* section :
       {"NAME", "SYNOPSIS", "DESCRIPTION", "COMMON OPTIONS", "COMMANDS", "ENVIRONMENT"})
    EXPECT_THAT(page.out, HasSubstr("\n.SH " + std::string(section) + "\n"));
  const std::size_t common = page.out.find(".SH COMMON OPTIONS");
  const std::string shared = page.out.substr(common, page.out.find(".SH COMMANDS") - common);
  for (const auto& command : commands()) {
    const std::string heading = ".SS \"kvvesk " + dashed(command) + "\"\n";
    const std::size_t at = page.out.find(heading);
    ASSERT_NE(at, std::string::npos) << command;
    const std::string section = page.out.substr(at, page.out.find("\n.S", at + 1) - at);
    for (const auto& option : test::listedIn(helpOf(command), "Options:")) {
      const std::string name = "\\fB" + dashed(option) + "\\fR";
      EXPECT_TRUE(section.find(name) != std::string::npos || shared.find(name) != std::string::npos)
          << command << ' ' << option;
    }
  }
}

TEST_F(ManualPage, IsThereForEachVerb) {
  const auto whole = test::run({"manpage"}).out;
  for (const auto& verb : test::listedIn(helpOf(""), "Subcommands:")) {
    const auto page = test::run({"manpage", verb});
    ASSERT_EQ(page.code, 0) << verb;
    EXPECT_THAT(page.out, HasSubstr(".SH NAME\nkvvesk\\-" + verb + " \\- "));
    EXPECT_THAT(whole, HasSubstr(".BR kvvesk\\-" + verb + " (1)"));
    auto parts = test::listedIn(helpOf(verb), "Subcommands:");
    if (parts.empty()) parts.insert("");
    for (const auto& part : parts) {
      const auto command = part.empty() ? verb : verb + " " + part;
      EXPECT_THAT(page.out, HasSubstr(".B kvvesk " + dashed(command) + "\n")) << command;
      for (const auto& option : test::listedIn(helpOf(command), "Options:"))
        EXPECT_THAT(page.out, HasSubstr("\\fB" + dashed(option) + "\\fR")) << command;
    }
  }
  const auto unknown = test::run({"manpage", "frob"});
  EXPECT_EQ(unknown.code, 2);
  EXPECT_EQ(unknown.err, "kvvesk: there is no command 'frob'\n");
}

TEST_F(ManualPage, TheFormatterTakesItWithoutComplaint) {
  if (answerOf("command -v groff").empty()) GTEST_SKIP() << "there is no groff here";
  const test::TempFolder folder;
  test::write(folder.file("page"), test::run({"manpage"}).out);
  EXPECT_EQ(answerOf("groff -man -Tutf8 -ww -z '" + folder.file("page") + "'"), "");
  for (const char* verb : {"document", "sql", "completion"}) {
    test::write(folder.file("verb"), test::run({"manpage", verb}).out);
    EXPECT_EQ(answerOf("groff -man -Tutf8 -ww -z '" + folder.file("verb") + "'"), "") << verb;
  }
  // Without the marks for bold and underlined letters.
  const std::string text = answerOf("groff -man -Tutf8 -P-cbou '" + folder.file("page") + "'");
  EXPECT_THAT(text, HasSubstr("kvvesk stale [options] register\n"));
  EXPECT_THAT(text, HasSubstr("--manual-query TEXT"));
  EXPECT_THAT(text, HasSubstr("{\"columns\":[\"...\"],\"rows\":[[\"...\"]]}"));
}

}  // namespace
}  // namespace kv
