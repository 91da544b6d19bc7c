// SPDX-License-Identifier: Apache-2.0
// Any text as criteria of Find, Filter and Sort: read, or refused with 3001 or 3265.

#include "common/error.h"
#include "common/variant.h"
#include "law.h"
#include "recordset/criteria.h"

namespace kv {
namespace {

const std::vector<SourceColumn>& columns() {
  static const std::vector<SourceColumn> instance = {
      {.name = "ID", .type = ColumnType::Int32},
      {.name = "DocumentTitle", .type = ColumnType::Text, .size = 255},
      {.name = "EffectiveDate", .type = ColumnType::Date},
      {.name = "Controlled", .type = ColumnType::Boolean},
      {.name = "RoutingStatus", .type = ColumnType::Int16},
      {.name = "Doc Notes", .type = ColumnType::Memo},
  };
  return instance;
}

const std::vector<Variant>& values() {
  static const std::vector<Variant> instance = {
      std::int32_t{7}, "Quality manual", Date(36959.5), true, std::int16_t{3}, Null};
  return instance;
}

bool holds(const Criteria& criteria) {
  if (criteria.kind == Criteria::Kind::Comparison) {
    const Comparison& one = criteria.comparison.front();
    return one.holds(values()[one.column()]);
  }
  bool all = true;
  bool any = false;
  for (const auto& part : criteria.parts) {
    const bool holdsPart = holds(part);
    all = all && holdsPart;
    any = any || holdsPart;
  }
  return criteria.kind == Criteria::Kind::And ? all : any;
}

template <class Read>
void orderly(const Read& read, std::string_view text) {
  try {
    read();
  } catch (const Error& e) {
    fuzz::law(e.number() == kBadArgument || e.number() == kNoSuchItem,
              "criteria are refused with 3001 or 3265", std::string(text) + "\n" + e.description());
  }
}

}  // namespace
}  // namespace kv

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kv;
  const std::string text(data, data + size);
  orderly(
      [&] {
        const Comparison one = parseComparison(text, columns());
        const bool alone = one.holds(values()[one.column()]);
        const Criteria same = parseCriteria(text, columns());
        fuzz::law(holds(same) == alone, "one comparison is criteria, too", text);
      },
      text);
  orderly([&] { (void)holds(parseCriteria(text, columns())); }, text);
  orderly([&] { (void)parseSort(text, columns()); }, text);
  return 0;
}
