#include <fmt/format.h>

#include <iostream>
#include <map>
#include <sstream>

#include "cli/command_tree.h"
#include "cli/verbs.h"
#include "session/version.h"

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
std::string typed(const CLI::Option& option) {
  if (!option.nonpositional()) return italic(option.get_name());
  std::string out;
  for (const auto& name : namesOf(option)) out += (out.empty() ? "" : ", ") + bold(name);
  if (takesValue(option)) out += " " + italic(option.get_type_name());
  return out;
}

void writeItem(std::ostream& out, const CLI::Option& option) {
  out << ".TP\n" << typed(option) << '\n' << plain(option.get_description());
  if (!option.get_default_str().empty()) out << " (" << plain(option.get_default_str()) << ')';
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
  explicit CommonOptions(const std::vector<const CLI::App*>& commands)
      : enough_(commands.size() / 2) {
    for (const auto* command : commands)
      for (const auto* option : command->get_options()) {
        auto& [count, first] = seen_[key(*option)];
        if (count++ == 0) {
          first = option;
          order_.push_back(option);
        }
      }
  }

  [[nodiscard]] bool contain(const CLI::Option& option) const {
    const auto found = seen_.find(key(option));
    return found != seen_.end() && found->second.first > enough_;
  }
  void write(std::ostream& out) const {
    for (const auto* option : order_)
      if (contain(*option)) writeItem(out, *option);
  }

 private:
  static std::string key(const CLI::Option& option) {
    return option.get_name(true, true) + '\n' + option.get_description();
  }

  std::size_t enough_;
  std::map<std::string, std::pair<std::size_t, const CLI::Option*>> seen_;
  std::vector<const CLI::Option*> order_;
};

void writeCommand(std::ostream& out, const CLI::App& command, const CommonOptions& common) {
  out << ".SS " << '"' << "kvvesk " << plain(pathOf(command)) << '"' << "\n.B kvvesk "
      << plain(pathOf(command)) << "\n[\\fIoptions\\fR]";
  for (const auto* word : positionalsOf(command)) {
    const std::string name = typed(*word);
    out << ' ' << (word->get_required() ? name : "[" + name + "]");
  }
  out << "\n.PP\n" << plain(command.get_description()) << ".\n";
  for (const auto* word : positionalsOf(command))
    if (!common.contain(*word)) writeItem(out, *word);
  for (const auto* option : optionsOf(command))
    if (!common.contain(*option)) writeItem(out, *option);
  // Verbs without a footer of their own have the program's.
  const std::string footer = command.get_footer();
  if (command.get_parent() != nullptr && footer != command.get_parent()->get_footer())
    writeLines(out, footer);
}

void writePage(std::ostream& out, const CLI::App& program) {
  const auto commands = commandsOf(program);
  const CommonOptions common(commands);
  out << fmt::format(".TH KVVESK 1 \"\" \"kvvesk {}.{}.{}\" \"User Commands\"\n", kVersionMajor,
                     kVersionMinor, kVersionRevision)
      << ".SH NAME\nkvvesk \\- keep a register of controlled documents\n"
      << ".SH SYNOPSIS\n.B kvvesk\n\\fIcommand\\fR [\\fIoptions\\fR] \\fIregister\\fR ...\n"
      << ".SH DESCRIPTION\n"
      << plain(program.get_description()) << '\n';
  writeLines(out, program.get_footer());
  out << ".SH COMMON OPTIONS\nThese are the same for nearly every command.\n";
  common.write(out);
  out << ".SH COMMANDS\n";
  for (const auto* command : commands) writeCommand(out, *command, common);
  out << ".SH ENVIRONMENT\n"
      << ".TP\n.B KVVESK_PASSWORD\nThe password of who logs in. It is asked for at the terminal "
         "when this is not set.\n"
      << ".TP\n.B KVVESK_NEW_PASSWORD\nThe password that a user is given by the commands that give "
         "one; asked for likewise.\n";
}

}  // namespace

void addManpage(CLI::App& app, Action& chosen) {
  auto* verb = app.add_subcommand("manpage", "Print the manual page");
  verb->group("");  // for who builds and installs the program
  verb->callback([&app, &chosen] {
    chosen = [&app] {
      writePage(std::cout, app);
      return kDone;
    };
  });
}

}  // namespace kv::cli
