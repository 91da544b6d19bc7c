// SPDX-License-Identifier: Apache-2.0
// Any text through the SQL front end, against the tables of a register. It is a statement or
// refused with a well-known number; a statement printed and read again prints the same; and the
// engine can prepare what is emitted for it.

#include <stdlib.h>  // mkdtemp is not in cstdlib

#include <filesystem>
#include <set>

#include "jet/binding/binder.h"
#include "jet/emit/emitter.h"
#include "jet/syntax/parser.h"
#include "law.h"
#include "recordset/database.h"
#include "schema/create_register.h"
#include "schema/register_schema.h"

namespace kv {
namespace {

const Catalog& catalog() {
  static const Catalog instance(registerTables());
  return instance;
}

// An empty register; its file goes as soon as it is open.
engine::Engine& registerEngine() {
  static const Ref<kvConnection> connection = [] {
    std::string folder = (std::filesystem::temp_directory_path() / "fuzzXXXXXX").string();
    fuzz::law(mkdtemp(folder.data()) != nullptr, "no temporary folder");
    Ref<kvConnection> made = createRegister(folder + "/fuzz.kvv");
    std::filesystem::remove_all(folder);
    return made;
  }();
  return connection->database()->engine();
}

// Engines bound how large a statement may be, which the front end leaves to them.
bool isLimit(std::string_view description) {
  for (const std::string_view limit :
       {"too large", "too many", "stack overflow", "at most 64 tables", "too complex", "too big"})
    if (description.find(limit) != std::string_view::npos) return true;
  return false;
}

void prepare(const jet::SqlText& sql, std::string_view statement) {
  if (sql.text.empty()) return;
  try {
    (void)registerEngine().prepare(sql.text);
  } catch (const Error& e) {
    fuzz::law(isLimit(e.description()), "the engine takes what is emitted",
              std::string(statement) + "\n" + sql.text + "\n" + e.description());
  }
}

void take(std::string_view text) {
  jet::Lexed lexed;
  jet::lex(text, lexed);
  jet::Statement tree = jet::parse(text, lexed);

  const std::string printed = jet::print(tree, lexed.literals);
  jet::Lexed again;
  try {
    jet::lex(printed, again);
    fuzz::law(jet::print(jet::parse(printed, again), again.literals) == printed,
              "a printed statement reads as itself", printed);
  } catch (const Error& e) {
    // Printing writes every parenthesis, and so may nest deeper than the text did.
    fuzz::law(e.description().find("too deeply nested") != std::string::npos,
              "a printed statement is a statement", printed + "\n" + e.description());
  }

  const jet::BoundStatement bound = jet::bind(std::move(tree), text, lexed.literals, catalog());
  (void)jet::describe(bound);
  for (const bool lifted : {true, false}) {
    if (lifted && !lexed.lifted) continue;
    const jet::Emitted emitted = jet::emit(bound, lexed.literals, lifted, jet::sqliteDialect());
    for (const auto* sql : {&emitted.whole, &emitted.keys, &emitted.head, &emitted.rows}) {
      prepare(*sql, text);
      for (const auto& use : sql->params) (void)jet::boundValue(use, lexed.literals, text);
    }
  }
}

}  // namespace
}  // namespace kv

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::set<std::int32_t> known = {kv::kSyntax,        kv::kUnknownName,
                                               kv::kUnknownTable,  kv::kMismatch,
                                               kv::kValueOverflow, kv::kEngineFailure};
  const std::string text(data, data + size);
  try {
    kv::take(text);
  } catch (const kv::Error& e) {
    kv::fuzz::law(known.contains(e.number()), "refusals have well-known numbers",
                  text + "\n" + e.description());
    kv::fuzz::law(e.where().offset == kv::TextRange::npos ||
                      e.where().offset + e.where().length <= text.size(),
                  "the place of a fault lies in the text", text);
  }
  return 0;
}
