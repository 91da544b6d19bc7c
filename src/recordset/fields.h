// SPDX-License-Identifier: Apache-2.0
// The fields of a record set: its columns, with the values of the current row.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "common/export.h"
#include "common/ref.h"
#include "common/variant.h"

namespace kv {

class Recordset;

class KVVESK_API Field : public Object {
 public:
  Field(Recordset& owner, std::size_t place) noexcept : owner_(&owner), place_(place) {}

  [[nodiscard]] const std::string& Name() const;
  // The value in the current row, or as assigned in the pending edit. Raises 3704 on a closed set,
  // 3021 without a current row, -2147217885 when somebody else has deleted it.
  [[nodiscard]] Variant Value() const;
  // Assigns; the first assignment begins the edit. Raises 3251 for a column that cannot be written
  // and 3421 for a value it cannot hold; then nothing has changed.
  void Value(const Variant& value);
  // The value as the row was read for this edit.
  [[nodiscard]] Variant OriginalValue() const;
  [[nodiscard]] std::int32_t Type() const;
  [[nodiscard]] std::int32_t DefinedSize()
      const;                                      // characters of a text field, bytes of the others
  [[nodiscard]] std::int32_t ActualSize() const;  // of the current value, likewise; 0 for Null
  [[nodiscard]] std::int32_t Attributes() const;

  // The text of a text field's value without a copy; empty for Null. Valid until the set moves, is
  // edited, or anything is written through its connection. For loops over many rows.
  [[nodiscard]] std::string_view Text() const;
  [[nodiscard]] bool IsNull() const;

 private:
  Recordset* owner_;  // the owner holds the field; references handed out hold the owner
  std::size_t place_;
};

class KVVESK_API Fields : public Object {
 public:
  explicit Fields(Recordset& owner) noexcept : owner_(&owner) {}

  [[nodiscard]] std::int32_t Count() const;
  // By name without regard to case, or by place from 0. Raises 3265 when there is none.
  [[nodiscard]] Ref<Field> operator()(std::string_view name) const;
  [[nodiscard]] Ref<Field> operator()(const char* name) const {
    return (*this)(std::string_view(name));
  }
  [[nodiscard]] Ref<Field> operator()(std::int32_t place) const;

  // Adds a column to a free-standing set that is not open yet (3219 otherwise). `Type` is one of
  // the kType numbers, `DefinedSize` the characters of a text column. Raises 3001 for another type,
  // 3265 for a name twice.
  void Append(const std::string& Name, std::int32_t Type, std::int32_t DefinedSize = 0,
              std::int32_t Attributes = 0);

 private:
  friend class Recordset;

  Recordset* owner_;
  mutable std::vector<std::unique_ptr<Field>> fields_;  // made when first asked for
};

}  // namespace kv
