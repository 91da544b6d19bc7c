#include "cli/answers/answer_set.h"

#include <ostream>

#include "cli/answers/output.h"

namespace kv::cli {

AnswerSet::AnswerSet(std::initializer_list<Column> columns) : rs_(Recordset::create()) {
  constexpr std::int32_t kWide = 255;
  for (const auto& [name, type] : columns)
    rs_->Fields().Append(name, type, type == kTypeVarWChar ? kWide : 0);
  rs_->Open();
}

void AnswerSet::add(std::initializer_list<Variant> values) {
  rs_->AddNew();
  std::int32_t place = 0;
  for (const auto& value : values) rs_->Fields(place++)->Value(value);
  rs_->Update();
}

void writeDone(std::ostream& out, const std::string& sentence,
               const std::vector<std::pair<const char*, Variant>>& keys, Format format) {
  if (format == Format::Table) {
    out << sentence << '\n';
    return;
  }
  const auto rs = Recordset::create();
  for (const auto& [name, value] : keys)
    rs->Fields().Append(name, value.isText()                      ? kTypeLongVarWChar
                              : value.kind() == VariantKind::Date ? kTypeDate
                                                                  : kTypeInteger);
  rs->Open();
  rs->AddNew();
  for (const auto& [name, value] : keys) rs->Fields(name)->Value(value);
  rs->Update();
  writeRows(out, *rs, format);
}

}  // namespace kv::cli
