// SPDX-License-Identifier: Apache-2.0
#include <iostream>

#include "cli/answers/output.h"
#include "cli/program/given_options.h"
#include "cli/program/verbs.h"
#include "desk/register/configuration.h"

namespace kv::cli {

namespace {

void show(const Session& session, const std::string& key, Format format) {
  const auto rs = desk::configuration(session, key);
  if (format != Format::Table) {
    writeRows(std::cout, *rs, format);
    return;
  }
  if (!key.empty()) {
    std::cout << plainText(rs->Fields(0)->Value()) << '\n';
    return;
  }
  const std::int32_t count = rs->Fields().Count();
  std::vector<std::vector<std::string>> rows;
  rows.reserve(static_cast<std::size_t>(count));
  for (std::int32_t i = 0; i < count; ++i)
    rows.push_back({rs->Fields(i)->Name(), plainText(rs->Fields(i)->Value())});
  writeTable(std::cout, {"Key", "Value"}, rows);
}

struct Setting : RegisterVerb {
  std::string key;
  std::optional<std::string> value;

  void describe(Command& verb) {
    options.ownUsersDo = true;
    verb.addOption("key", key, "The value to show or set; all of them when left out");
    addText(verb, "value", value, "The new value; empty for none");
  }
  void run(const Session& session) const {
    if (!value) return show(session, key, options.format);
    const Variant stored = desk::setConfiguration(session, key, *value);
    std::cout << key << " = " << plainText(stored) << '\n';
  }
};

}  // namespace

void registerConfig(Command& verb) { declare<Setting>(verb); }

}  // namespace kv::cli
