// SPDX-License-Identifier: Apache-2.0
// The functions and the table that our SQL for SQLite uses: text keys, Like, text extremes,
// conversions, and the list of keys by which record sets read blocks of rows.

#include <fmt/format.h>
#include <sqlite3.h>

#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <new>
#include <string>

#include "common/convert.h"
#include "common/error.h"
#include "common/like.h"
#include "common/text_key.h"
#include "engine/sqlite/sqlite_engine.h"
#include "engine/sqlite/sqlite_error.h"

namespace kv::engine {

namespace {

constexpr int kPure = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;

std::string_view textOf(sqlite3_value* value) {
  const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
  return {text, static_cast<std::size_t>(sqlite3_value_bytes(value))};
}

void giveText(sqlite3_context* context, std::string_view text) {
  sqlite3_result_text64(context, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}

void giveError(sqlite3_context* context, std::int32_t number, std::string_view text) {
  const std::string message = fmt::format("{}{} {}", kFunctionErrorMark, number, text);
  sqlite3_result_error(context, message.c_str(), static_cast<int>(message.size()));
}

// No exception may pass through SQLite.
template <class Body>
void guarded(sqlite3_context* context, Body body) noexcept {
  try {
    body();
  } catch (const Error& e) {
    giveError(context, e.number(), e.description());
  } catch (const std::bad_alloc&) {
    sqlite3_result_error_nomem(context);
  } catch (const std::exception& e) {
    sqlite3_result_error(context, e.what(), -1);
  }
}

// kv_fold(x), kv_order(x): the key of a text; other values as they are. The buffer belongs to the
// connection.
template <void (*Key)(std::string_view, std::string&)>
void keyFunction(sqlite3_context* context, int, sqlite3_value** args) {
  guarded(context, [&] {
    if (sqlite3_value_type(args[0]) != SQLITE_TEXT) {
      sqlite3_result_value(context, args[0]);
      return;
    }
    auto& buffer = *static_cast<std::string*>(sqlite3_user_data(context));
    Key(textOf(args[0]), buffer);
    giveText(context, buffer);
  });
}

// kv_like(text, pattern); a constant pattern is read once per statement.
void likeFunction(sqlite3_context* context, int, sqlite3_value** args) {
  guarded(context, [&] {
    if (sqlite3_value_type(args[0]) == SQLITE_NULL || sqlite3_value_type(args[1]) == SQLITE_NULL)
      return;
    const auto* pattern = static_cast<const LikePattern*>(sqlite3_get_auxdata(context, 1));
    std::unique_ptr<LikePattern> own;
    if (pattern == nullptr) {
      own = std::make_unique<LikePattern>(textOf(args[1]));
      pattern = own.get();
    }
    sqlite3_result_int(context, pattern->matches(textOf(args[0])) ? 1 : 0);
    if (own)
      sqlite3_set_auxdata(context, 1, own.release(),
                          [](void* p) { delete static_cast<LikePattern*>(p); });
  });
}

// kv_min(x), kv_max(x): the text with the least or greatest order key; of equal ones the least by
// code point.
struct Extreme {
  bool any = false;
  std::string key;
  std::string text;
};

// What SQLite keeps of an aggregate while it runs: zeroed memory.
struct ExtremeSlot {
  Extreme* extreme;
};

Extreme* extremeOf(sqlite3_context* context, bool create) {
  auto* slot = static_cast<ExtremeSlot*>(
      sqlite3_aggregate_context(context, create ? static_cast<int>(sizeof(ExtremeSlot)) : 0));
  if (slot == nullptr) return nullptr;
  if (slot->extreme == nullptr && create) slot->extreme = new Extreme;
  return slot->extreme;
}

template <bool Greatest>
void extremeStep(sqlite3_context* context, int, sqlite3_value** args) {
  guarded(context, [&] {
    if (sqlite3_value_type(args[0]) == SQLITE_NULL) return;
    Extreme* best = extremeOf(context, true);
    if (best == nullptr) return;
    const auto text = textOf(args[0]);
    std::string key = orderKey(text);
    const int order = best->any ? key.compare(best->key) : 0;
    if (!best->any || (Greatest ? order > 0 : order < 0) || (order == 0 && text < best->text)) {
      best->any = true;
      best->key = std::move(key);
      best->text = text;
    }
  });
}

void extremeFinal(sqlite3_context* context) {
  guarded(context, [&] {
    const std::unique_ptr<Extreme> best(extremeOf(context, false));
    if (best && best->any) giveText(context, best->text);
  });
}

Date dateOf(sqlite3_value* value) {
  const auto date = parseIso(textOf(value));
  if (!date) raise(kMismatch);
  return *date;
}

// kv_days(date): the day count.
void daysFunction(sqlite3_context* context, int, sqlite3_value** args) {
  guarded(context, [&] {
    if (sqlite3_value_type(args[0]) != SQLITE_NULL)
      sqlite3_result_double(context, dateOf(args[0]).days());
  });
}

// kv_convert(value, type): the value as a column of that type holds it.
void convertFunction(sqlite3_context* context, int, sqlite3_value** args) {
  guarded(context, [&] {
    const auto type = textOf(args[1]);
    const int kind = sqlite3_value_type(args[0]);
    if (kind == SQLITE_NULL) {
      if (type == "YesNo") sqlite3_result_int(context, 0);
      return;
    }
    if (type == "Text" || type == "Memo") {
      if (kind == SQLITE_FLOAT)
        giveText(context, numberText(sqlite3_value_double(args[0])));
      else
        giveText(context, textOf(args[0]));
      return;
    }
    const auto iso = kind == SQLITE_TEXT ? parseIso(textOf(args[0])) : std::nullopt;
    if (type == "DateTime") {
      giveText(context, isoText(iso                   ? *iso
                                : kind == SQLITE_TEXT ? toDate(Variant(textOf(args[0])))
                                                      : Date(sqlite3_value_double(args[0]))));
      return;
    }
    double number = 0;
    if (kind != SQLITE_TEXT) {
      number = sqlite3_value_double(args[0]);
    } else if (iso) {
      number = iso->days();
    } else {
      const auto parsed = parseNumber(textOf(args[0]));
      if (!parsed) raise(kMismatch);
      number = *parsed;
    }
    if (type == "YesNo") {
      sqlite3_result_int(context, number != 0 ? -1 : 0);
    } else if (type == "Double" || type == "Single") {
      if (type == "Single") number = static_cast<double>(static_cast<float>(number));
      if (std::isfinite(number))
        sqlite3_result_double(context, number);
      else
        giveError(context, kValueOverflow, "Overflow.");
    } else {
      const double whole = roundHalfEven(number);
      const double limit = type == "Short" ? 32768.0 : 2147483648.0;
      if (!(whole >= -limit && whole < limit)) {
        giveError(context, kValueOverflow, "Overflow.");
        return;
      }
      sqlite3_result_int64(context, static_cast<sqlite3_int64>(whole));
    }
  });
}

// ---- kv_keys(list): the rows of a KeyList, columns k1, k2, ... ----

constexpr int kMostKeys = 64;

struct KeysCursor {
  sqlite3_vtab_cursor base;
  const KeyList* list;
  std::size_t row;
};

int keysConnect(sqlite3* db, void*, int, const char* const*, sqlite3_vtab** out, char**) {
  std::string sql = "CREATE TABLE x(";
  for (int i = 1; i <= kMostKeys; ++i) sql += fmt::format("k{} INTEGER, ", i);
  sql += "list HIDDEN)";
  const int code = sqlite3_declare_vtab(db, sql.c_str());
  if (code != SQLITE_OK) return code;
  *out = static_cast<sqlite3_vtab*>(sqlite3_malloc(sizeof(sqlite3_vtab)));
  if (*out == nullptr) return SQLITE_NOMEM;
  **out = {};
  return SQLITE_OK;
}

int keysDisconnect(sqlite3_vtab* table) {
  sqlite3_free(table);
  return SQLITE_OK;
}

int keysBestIndex(sqlite3_vtab*, sqlite3_index_info* info) {
  for (int i = 0; i < info->nConstraint; ++i) {
    const auto& c = info->aConstraint[i];
    if (c.iColumn != kMostKeys || c.op != SQLITE_INDEX_CONSTRAINT_EQ) continue;
    if (c.usable == 0) return SQLITE_CONSTRAINT;
    info->aConstraintUsage[i].argvIndex = 1;
    info->aConstraintUsage[i].omit = 1;
    info->estimatedCost = 1;
    info->estimatedRows = 100;
    return SQLITE_OK;
  }
  return SQLITE_CONSTRAINT;
}

int keysOpen(sqlite3_vtab*, sqlite3_vtab_cursor** out) {
  auto* cursor = static_cast<KeysCursor*>(sqlite3_malloc(sizeof(KeysCursor)));
  if (cursor == nullptr) return SQLITE_NOMEM;
  *cursor = {};
  *out = &cursor->base;
  return SQLITE_OK;
}

int keysClose(sqlite3_vtab_cursor* cursor) {
  sqlite3_free(cursor);
  return SQLITE_OK;
}

int keysFilter(sqlite3_vtab_cursor* base, int, const char*, int, sqlite3_value** args) {
  auto* cursor = reinterpret_cast<KeysCursor*>(base);
  cursor->list = static_cast<const KeyList*>(sqlite3_value_pointer(args[0], "kv_keys"));
  cursor->row = 0;
  return SQLITE_OK;
}

int keysNext(sqlite3_vtab_cursor* base) {
  ++reinterpret_cast<KeysCursor*>(base)->row;
  return SQLITE_OK;
}

int keysEof(sqlite3_vtab_cursor* base) {
  const auto* cursor = reinterpret_cast<const KeysCursor*>(base);
  return cursor->list == nullptr || cursor->row * cursor->list->perRow >= cursor->list->keys.size()
             ? 1
             : 0;
}

int keysColumn(sqlite3_vtab_cursor* base, sqlite3_context* context, int column) {
  const auto* cursor = reinterpret_cast<const KeysCursor*>(base);
  const auto place = static_cast<std::size_t>(column);
  if (column == kMostKeys || place >= cursor->list->perRow) return SQLITE_OK;
  const auto key = cursor->list->keys[cursor->row * cursor->list->perRow + place];
  if (key != kNoKey) sqlite3_result_int64(context, key);
  return SQLITE_OK;
}

int keysRowid(sqlite3_vtab_cursor* base, sqlite3_int64* out) {
  *out = static_cast<sqlite3_int64>(reinterpret_cast<const KeysCursor*>(base)->row);
  return SQLITE_OK;
}

// Only xConnect and no xCreate: the table exists on every connection and is never created.
constexpr sqlite3_module kKeysModule = {.iVersion = 0,
                                        .xCreate = nullptr,
                                        .xConnect = keysConnect,
                                        .xBestIndex = keysBestIndex,
                                        .xDisconnect = keysDisconnect,
                                        .xDestroy = nullptr,
                                        .xOpen = keysOpen,
                                        .xClose = keysClose,
                                        .xFilter = keysFilter,
                                        .xNext = keysNext,
                                        .xEof = keysEof,
                                        .xColumn = keysColumn,
                                        .xRowid = keysRowid,
                                        .xUpdate = nullptr,
                                        .xBegin = nullptr,
                                        .xSync = nullptr,
                                        .xCommit = nullptr,
                                        .xRollback = nullptr,
                                        .xFindFunction = nullptr,
                                        .xRename = nullptr,
                                        .xSavepoint = nullptr,
                                        .xRelease = nullptr,
                                        .xRollbackTo = nullptr,
                                        .xShadowName = nullptr};

void deleteBuffer(void* p) { delete static_cast<std::string*>(p); }

}  // namespace

void registerSqliteFunctions(sqlite3* db) {
  const auto check = [&](int code) {
    if (code != SQLITE_OK) raiseSqlite(db, code);
  };
  check(sqlite3_create_function_v2(db, "kv_fold", 1, kPure, new std::string,
                                   keyFunction<foldKeyInto>, nullptr, nullptr, deleteBuffer));
  check(sqlite3_create_function_v2(db, "kv_order", 1, kPure, new std::string,
                                   keyFunction<orderKeyInto>, nullptr, nullptr, deleteBuffer));
  check(sqlite3_create_function_v2(db, "kv_like", 2, kPure, nullptr, likeFunction, nullptr, nullptr,
                                   nullptr));
  check(sqlite3_create_function_v2(db, "kv_days", 1, kPure, nullptr, daysFunction, nullptr, nullptr,
                                   nullptr));
  check(sqlite3_create_function_v2(db, "kv_convert", 2, kPure, nullptr, convertFunction, nullptr,
                                   nullptr, nullptr));
  check(sqlite3_create_function_v2(db, "kv_min", 1, kPure, nullptr, nullptr, extremeStep<false>,
                                   extremeFinal, nullptr));
  check(sqlite3_create_function_v2(db, "kv_max", 1, kPure, nullptr, nullptr, extremeStep<true>,
                                   extremeFinal, nullptr));
  check(sqlite3_create_module_v2(db, "kv_keys", &kKeysModule, nullptr, nullptr));
}

}  // namespace kv::engine
