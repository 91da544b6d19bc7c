#include <iostream>

#include "cli/answers/output.h"
#include "cli/program/given_options.h"
#include "cli/program/verbs.h"
#include "desk/register/configuration.h"

namespace kv::cli {

namespace {

int show(const Session& session, const Options& options, const std::string& key) {
  const auto rs = desk::configuration(session, key);
  if (options.format != Format::Table) {
    writeRows(std::cout, *rs, options.format);
    return kDone;
  }
  if (!key.empty()) {
    std::cout << plainText(rs->Fields(0)->Value()) << '\n';
    return kDone;
  }
  const std::int32_t count = rs->Fields().Count();
  std::vector<std::vector<std::string>> rows;
  rows.reserve(static_cast<std::size_t>(count));
  for (std::int32_t i = 0; i < count; ++i)
    rows.push_back({rs->Fields(i)->Name(), plainText(rs->Fields(i)->Value())});
  writeTable(std::cout, {"Key", "Value"}, rows);
  return kDone;
}

int config(const Options& options, const std::string& key, const std::string* value) {
  const Session session(options);
  if (value == nullptr) return show(session, options, key);
  const Variant stored = desk::setConfiguration(session, key, *value);
  std::cout << key << " = " << plainText(stored) << '\n';
  return kDone;
}

struct Setting : RegisterVerb {
  std::string key;
  std::optional<std::string> value;

  void describe(Command& verb) {
    options.ownUsersDo = true;
    verb.addOption("key", key, "The value to show or set; all of them when left out");
    addText(verb, "value", value, "The new value; empty for none");
  }
  [[nodiscard]] int run() const { return config(options, key, value ? &*value : nullptr); }
};

}  // namespace

void registerConfig(Command& verb) { declare<Setting>(verb); }

}  // namespace kv::cli
