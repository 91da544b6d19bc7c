// SPDX-License-Identifier: Apache-2.0
#include "recordset/fields.h"

#include "common/convert.h"
#include "common/error.h"
#include "common/text.h"
#include "recordset/local_source.h"
#include "recordset/recordset.h"

namespace kv {

namespace {

std::int32_t typeNumber(ColumnType type) {
  switch (type) {
    case ColumnType::Boolean: return kTypeBoolean;
    case ColumnType::Int16: return kTypeSmallInt;
    case ColumnType::Int32: return kTypeInteger;
    case ColumnType::Single: return kTypeSingle;
    case ColumnType::Double: return kTypeDouble;
    case ColumnType::Date: return kTypeDate;
    case ColumnType::Text: return kTypeVarWChar;
    case ColumnType::Memo: return kTypeLongVarWChar;
  }
  return 0;
}

ColumnType typeOfNumber(std::int32_t number) {
  switch (number) {
    case kTypeBoolean: return ColumnType::Boolean;
    case kTypeSmallInt: return ColumnType::Int16;
    case kTypeInteger: return ColumnType::Int32;
    case kTypeSingle: return ColumnType::Single;
    case kTypeDouble: return ColumnType::Double;
    case kTypeDate: return ColumnType::Date;
    case kTypeVarWChar: return ColumnType::Text;
    case kTypeLongVarWChar: return ColumnType::Memo;
    default: raise(kBadArgument);
  }
}

constexpr std::int32_t kMemoSize = 536870910;  // what clients know as the defined size of long text

std::int32_t fixedSize(ColumnType type) {
  switch (type) {
    case ColumnType::Boolean:
    case ColumnType::Int16: return 2;
    case ColumnType::Int32:
    case ColumnType::Single: return 4;
    case ColumnType::Double:
    case ColumnType::Date: return 8;
    case ColumnType::Text: return 0;
    case ColumnType::Memo: return kMemoSize;
  }
  return 0;
}

const SourceColumn& columnOf(const std::shared_ptr<RowSource>& source,
                             const std::shared_ptr<LocalSource>& local, std::size_t place) {
  if (source) return source->columns()[place];
  if (local) return local->columns()[place];
  raise(kClosed);
}

}  // namespace

// ---- Field ----

const std::string& Field::Name() const {
  return columnOf(owner_->source_, owner_->local_, place_).name;
}

Variant Field::Value() const { return owner_->fieldValue(place_); }
void Field::Value(const Variant& value) { owner_->assign(place_, value); }
Variant Field::OriginalValue() const { return owner_->originalValue(place_); }
std::string_view Field::Text() const { return owner_->fieldText(place_); }
bool Field::IsNull() const { return owner_->fieldIsNull(place_); }

std::int32_t Field::Type() const {
  return typeNumber(columnOf(owner_->source_, owner_->local_, place_).type);
}

std::int32_t Field::DefinedSize() const {
  const auto& column = columnOf(owner_->source_, owner_->local_, place_);
  return column.type == ColumnType::Text ? column.size : fixedSize(column.type);
}

std::int32_t Field::ActualSize() const {
  const Variant value = Value();
  if (value.isNull() || value.isEmpty()) return 0;
  const auto type = columnOf(owner_->source_, owner_->local_, place_).type;
  if (!isTextType(type)) return fixedSize(type);
  return static_cast<std::int32_t>(characterCount(toText(value)));
}

std::int32_t Field::Attributes() const {
  const auto& column = columnOf(owner_->source_, owner_->local_, place_);
  std::int32_t out = 0;
  if (column.updatable) out |= kFieldUpdatable;
  if (column.nullable) out |= kFieldIsNullable | kFieldMayBeNull;
  if (!isTextType(column.type)) out |= kFieldFixed;
  if (column.type == ColumnType::Memo) out |= kFieldLong;
  return out;
}

// ---- Fields ----

std::int32_t Fields::Count() const {
  if (owner_->source_) return static_cast<std::int32_t>(owner_->source_->columns().size());
  return owner_->local_ ? static_cast<std::int32_t>(owner_->local_->columns().size()) : 0;
}

Ref<Field> Fields::operator()(std::string_view name) const {
  for (std::int32_t i = 0; i < Count(); ++i)
    if (equalNoCase(columnOf(owner_->source_, owner_->local_, static_cast<std::size_t>(i)).name,
                    name))
      return (*this)(i);
  if (!owner_->source_ && !owner_->local_) raise(kClosed);
  raise(kNoSuchItem, name);
}

Ref<Field> Fields::operator()(std::int32_t place) const {
  if (!owner_->source_ && !owner_->local_) raise(kClosed);
  if (place < 0 || place >= Count()) raise(kNoSuchItem, std::to_string(place));
  const auto at = static_cast<std::size_t>(place);
  if (fields_.size() <= at) fields_.resize(static_cast<std::size_t>(Count()));
  if (!fields_[at]) fields_[at] = std::make_unique<Field>(*owner_, at);
  return Ref<Field>(std::shared_ptr<Field>(owner_->shared_from_this(), fields_[at].get()));
}

void Fields::Append(const std::string& Name, std::int32_t Type, std::int32_t DefinedSize,
                    std::int32_t) {
  if (!owner_->local_ || owner_->open_) raise(kNotAllowed);
  const auto type = typeOfNumber(Type);
  for (const auto& column : owner_->local_->columns())
    if (equalNoCase(column.name, Name)) raise(kNoSuchItem, Name);
  if (type == ColumnType::Text && DefinedSize <= 0) raise(kBadArgument);
  owner_->local_->append(
      {.name = Name, .type = type, .size = type == ColumnType::Text ? DefinedSize : 0});
}

}  // namespace kv
