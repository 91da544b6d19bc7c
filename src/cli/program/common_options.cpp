// SPDX-License-Identifier: Apache-2.0
#include "cli/program/verbs.h"

namespace kv::cli {

namespace {

void addFormats(Command& verb, Options& options, bool lines) {
  const auto format = [&](const char* name, const char* help, Format value) {
    return verb.addFlag(
        name, [&options, value] { options.format = value; }, help);
  };
  auto* csv = format("--csv", "Comma-separated values with a heading", Format::Csv);
  auto* json = format(
      "--json",
      lines ? "One JSON object per statement" : R"(JSON: {"columns":["..."],"rows":[["..."]]})",
      Format::Json);
  csv->excludes(json);
  if (!lines) return;
  auto* jsonl = format("--jsonl", "One JSON object per statement and line; goes on after an error",
                       Format::JsonLines);
  jsonl->excludes(csv);
  jsonl->excludes(json);
}

}  // namespace

void addCommon(Command& verb, Options& options, Formats formats) {
  verb.addOption("register", options.registerPath,
                 "The register: a file's path, or postgresql://user@host:port/database")
      ->required();
  verb.addOption("-u,--user", options.user,
                 "Who logs in; the password comes from KVVESK_PASSWORD or is asked for")
      ->required();
  verb.addOption("--trace", options.trace,
                 "Append every statement that runs to this file, one per line");
  if (formats != Formats::None) addFormats(verb, options, formats == Formats::Lines);
}

void addJson(Command& verb, Options& options, const std::string& help) {
  verb.addFlag(
      "--json", [&options] { options.format = Format::Json; }, help);
}

}  // namespace kv::cli
