// SPDX-License-Identifier: Apache-2.0
#include "recordset/rows.h"

#include <type_traits>

#include "common/convert.h"
#include "common/error.h"
#include "recordset/recordset.h"

namespace kv {

namespace {

template <class T>
struct Plain {
  using type = T;
  static constexpr bool optional = false;
};
template <class T>
struct Plain<std::optional<T>> {
  using type = T;
  static constexpr bool optional = true;
};

// Whether every value of a column of this type is a T.
template <class T>
bool fits(std::int32_t type) {
  if constexpr (std::is_same_v<T, std::string>)
    return type == kTypeVarWChar || type == kTypeLongVarWChar;
  else if constexpr (std::is_same_v<T, bool>)
    return type == kTypeBoolean;
  else if constexpr (std::is_same_v<T, Date>)
    return type == kTypeDate;
  else if constexpr (std::is_same_v<T, std::int16_t>)
    return type == kTypeSmallInt;
  else if constexpr (std::is_same_v<T, std::int32_t>)
    return type == kTypeSmallInt || type == kTypeInteger;
  else if constexpr (std::is_same_v<T, float>)  // which holds every 16-bit number, but no wider one
    return type == kTypeSmallInt || type == kTypeSingle;
  else
    return type == kTypeSmallInt || type == kTypeInteger || type == kTypeSingle ||
           type == kTypeDouble;
}

// Of a value that fits.
template <class T>
T as(const Variant& value) {
  if constexpr (std::is_same_v<T, std::string>)
    return *value.as<std::string>();
  else if constexpr (std::is_same_v<T, bool>)
    return *value.as<bool>();
  else if constexpr (std::is_same_v<T, Date>)
    return *value.as<Date>();
  else if constexpr (std::is_same_v<T, std::int16_t>)
    return *value.as<std::int16_t>();
  else if constexpr (std::is_same_v<T, std::int32_t>)
    return toInt32(value);
  else
    return static_cast<T>(toDouble(value));
}

}  // namespace

// ---- Row ----

std::string_view Row::text(std::string_view column) const {
  auto& c = rows_->column(column);
  if (c.isText && rows_->set_->EditMode() == kEditNone) return c.field->Text();
  c.buffer = joinText(c.field->Value());
  return c.buffer;
}

bool Row::isNull(std::string_view column) const { return rows_->column(column).field->IsNull(); }

Variant Row::value(std::string_view column) const { return rows_->column(column).field->Value(); }

template <class T>
T Row::get(std::string_view column) const {
  using Value = typename Plain<T>::type;
  const auto& c = rows_->column(column);
  if (!fits<Value>(c.field->Type())) raise(kTypeMismatch, column);
  const Variant value = c.field->Value();
  if (value.isNull() || value.isEmpty()) {
    if constexpr (Plain<T>::optional) return std::nullopt;
    raise(kInvalidNull, column);
  }
  return as<Value>(value);
}

template std::string Row::get(std::string_view) const;
template std::int16_t Row::get(std::string_view) const;
template std::int32_t Row::get(std::string_view) const;
template bool Row::get(std::string_view) const;
template float Row::get(std::string_view) const;
template double Row::get(std::string_view) const;
template Date Row::get(std::string_view) const;
template std::optional<std::string> Row::get(std::string_view) const;
template std::optional<std::int16_t> Row::get(std::string_view) const;
template std::optional<std::int32_t> Row::get(std::string_view) const;
template std::optional<bool> Row::get(std::string_view) const;
template std::optional<float> Row::get(std::string_view) const;
template std::optional<double> Row::get(std::string_view) const;
template std::optional<Date> Row::get(std::string_view) const;

// ---- Rows ----

Rows::Iterator Rows::begin() {
  set_->Update();
  if (set_->RecordCount() > 0) set_->MoveFirst();
  return Iterator(*this);
}

void Rows::next() { set_->MoveNext(); }

bool Rows::done() const { return set_->Eof(); }

Rows::Column& Rows::column(std::string_view name) {
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    if (++last_ >= columns_.size()) last_ = 0;
    if (columns_[last_].name == name) return columns_[last_];
  }
  const auto field = set_->Fields(name);
  // A column has one place here, whatever it was called before, and places do not move: texts that
  // were handed out stay where they are.
  columns_.reserve(static_cast<std::size_t>(set_->Fields().Count()));
  for (last_ = 0; last_ < columns_.size(); ++last_)
    if (columns_[last_].field.get() == field.get()) {
      columns_[last_].name = name;
      return columns_[last_];
    }
  const bool isText = fits<std::string>(field->Type());
  columns_.push_back({std::string(name), field.shared(), isText, {}});
  return columns_.back();
}

// ---- what a set does with several values at once ----

Rows Recordset::rows() { return Rows(shared_from_this()); }

void Recordset::assignAll(std::initializer_list<NamedValue> values) {
  try {
    for (const auto& [column, value] : values) Fields(column)->Value(value);
    Update();
  } catch (...) {
    CancelUpdate();
    throw;
  }
}

void Recordset::AddNew(std::initializer_list<NamedValue> values) {
  AddNew();
  assignAll(values);
}

void Recordset::Update(std::initializer_list<NamedValue> values) {
  Update();
  assignAll(values);
}

}  // namespace kv
