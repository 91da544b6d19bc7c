// SPDX-License-Identifier: Apache-2.0
#include "cli/program/given_options.h"

#include "common/whole_number.h"

namespace kv::cli {

namespace {

std::string dateOf(const std::string& text) {
  const auto date = parseDate(text);
  if (!date) throw WrongWord("'" + text + "' is not a date such as 2024-03-09");
  return isoText(*date);
}

std::int32_t numberOf(const std::string& text) {
  const auto number = wholeNumber(text);
  if (!number) throw WrongWord("'" + text + "' is not a number");
  return *number;
}

}  // namespace

Argument* addText(Command& verb, const std::string& name, std::optional<std::string>& given,
                  const std::string& help) {
  return verb
      .addOption(
          name, [&given](const std::string& text) { given = text; }, help)
      ->typeName("TEXT");
}

Argument* addNumber(Command& verb, const std::string& name, std::int32_t& number,
                    const std::string& help) {
  return verb
      .addOption(
          name, [&number](const std::string& text) { number = numberOf(text); }, help)
      ->typeName("NUMBER");
}

Argument* addNumber(Command& verb, const std::string& name, std::optional<std::int32_t>& given,
                    const std::string& help) {
  return verb
      .addOption(
          name, [&given](const std::string& text) { given = numberOf(text); }, help)
      ->typeName("NUMBER");
}

Argument* addYesNo(Command& verb, const std::string& name, std::optional<bool>& given,
                   const std::string& help) {
  return verb
      .addOption(
          name,
          [&given](const std::string& text) {
            if (text != "yes" && text != "no")
              throw WrongWord("takes yes or no, not '" + text + "'");
            given = text == "yes";
          },
          help)
      ->typeName("yes|no");
}

Argument* addDate(Command& verb, const std::string& name, std::optional<std::string>& given,
                  const std::string& help) {
  return verb
      .addOption(
          name, [&given](const std::string& text) { given = dateOf(text); }, help)
      ->typeName("DATE");
}

Argument* addDateOrNone(Command& verb, const std::string& name, std::optional<std::string>& given,
                        const std::string& help) {
  return verb
      .addOption(
          name,
          [&given](const std::string& text) {
            given = text.empty() ? std::string() : dateOf(text);
          },
          help)
      ->typeName("DATE");
}

}  // namespace kv::cli
