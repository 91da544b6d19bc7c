#include "cli/given_options.h"

#include "cli/whole_number.h"

namespace kv::cli {

namespace {

std::string dateOf(const std::string& name, const std::string& text) {
  const auto date = parseDate(text);
  if (!date) throw CLI::ValidationError(name, "'" + text + "' is not a date such as 2024-03-09");
  return isoText(*date);
}

}  // namespace

CLI::Option* addText(CLI::App& verb, const std::string& name, std::optional<std::string>& given,
                     const std::string& help) {
  return verb
      .add_option_function<std::string>(
          name, [&given](const std::string& text) { given = text; }, help)
      ->type_name("TEXT");
}

CLI::Option* addNumber(CLI::App& verb, const std::string& name, std::int32_t& number,
                       const std::string& help) {
  return verb
      .add_option_function<std::string>(
          name,
          [&number, name](const std::string& text) {
            const auto given = wholeNumber(text);
            if (!given) throw CLI::ValidationError(name, "'" + text + "' is not a number");
            number = *given;
          },
          help)
      ->type_name("NUMBER");
}

CLI::Option* addYesNo(CLI::App& verb, const std::string& name, std::optional<bool>& given,
                      const std::string& help) {
  return verb
      .add_option_function<std::string>(
          name,
          [&given, name](const std::string& text) {
            if (text != "yes" && text != "no")
              throw CLI::ValidationError(name, "takes yes or no, not '" + text + "'");
            given = text == "yes";
          },
          help)
      ->type_name("yes|no");
}

CLI::Option* addDate(CLI::App& verb, const std::string& name, std::optional<std::string>& given,
                     const std::string& help) {
  return verb
      .add_option_function<std::string>(
          name, [&given, name](const std::string& text) { given = dateOf(name, text); }, help)
      ->type_name("DATE");
}

CLI::Option* addDateOrNone(CLI::App& verb, const std::string& name,
                           std::optional<std::string>& given, const std::string& help) {
  return verb
      .add_option_function<std::string>(
          name,
          [&given, name](const std::string& text) {
            given = text.empty() ? std::string() : dateOf(name, text);
          },
          help)
      ->type_name("DATE");
}

}  // namespace kv::cli
