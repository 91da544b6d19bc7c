#include <iostream>

#include "cli/answers/output.h"
#include "cli/program/given_options.h"
#include "cli/program/verbs.h"
#include "cli/register/users_file.h"
#include "common/convert.h"
#include "common/error.h"
#include "common/text.h"
#include "kvdata/table_value.h"

namespace kv::cli {

namespace {

constexpr const char* kTable = "VeskConfig";

// These say what the file is; changing them changes nothing but whether it can be opened.
bool isVersion(const std::string& key) {
  return equalNoCase(key, "DatabaseVersion") || equalNoCase(key, "Version");
}

int show(const Session& session, const Options& options, const std::string& key) {
  const auto& database = session->DataServer()->Connection()->database();
  const std::string what = key.empty() ? "*" : "[" + columnOf(*database, kTable, key) + "]";
  const auto rs = openOwn(database, "Select " + what + " From " + kTable, kReadOnly);
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

// Where users and actions are kept is only changed to a place where they can be reached.
void store(const Session& session, const std::string& key, const std::string& value) {
  const auto config = session->DataServer()->Config();
  const Variant given = value.empty() ? Variant(Null) : Variant(value);
  if (equalNoCase(key, "ExternalActionSystem"))
    session->SetExternalActionSystem(!given.isNull() && toBoolean(given),
                                     joinText(config->Value("UserDBLocation")));
  else if (equalNoCase(key, "UserDBLocation") && !value.empty())
    session->SetExternalActionSystem(true, storedLocation(value));
  else
    config->Store(key, given);
}

int config(const Options& options, const std::string& key, const std::string* value) {
  const Session session(options);
  if (value == nullptr) return show(session, options, key);
  session.requireAdministrator("only administrators may set configuration values");
  if (isVersion(key))
    throw Error(kPermission, "kvvesk", "The version of a register is not a setting.");
  store(session, key, *value);
  std::cout << key << " = " << plainText(session->DataServer()->Config()->Value(key)) << '\n';
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
