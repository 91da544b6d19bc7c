// SPDX-License-Identifier: Apache-2.0
// A plain in-memory model of a record set, to compare the real ones with: rows in a list, holes
// where rows were deleted.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kv::test {

class ModelSet {
 public:
  // A row has a number that never changes and the values of its fields; no value is Null.
  struct Row {
    std::int32_t id = 0;
    std::vector<std::optional<std::string>> fields;
    bool hole = false;
  };
  enum class At { Bof, Row, Eof };

  explicit ModelSet(std::vector<Row> rows);

  [[nodiscard]] bool bof() const;
  [[nodiscard]] bool eof() const;
  [[nodiscard]] int count() const;
  // The current row; nothing at the ends and on a hole.
  [[nodiscard]] const Row* current() const;

  // Each returns the number of the error it would raise, 0 for none.
  int moveFirst();
  int moveLast();
  int moveNext();
  int movePrevious();
  int move(int rows);
  int goTo(std::size_t slot);
  int find(std::size_t field, const std::string& value, bool forward);
  int set(std::size_t field, std::optional<std::string> value);
  int addNew(std::int32_t id);
  int update();
  int cancel();
  int remove();

  [[nodiscard]] bool adding() const { return pending_ && pending_->adding; }
  [[nodiscard]] bool editing() const { return pending_ && !pending_->adding; }
  [[nodiscard]] std::size_t slot() const { return place_; }
  [[nodiscard]] const std::vector<Row>& rows() const { return rows_; }

 private:
  struct Pending {
    bool adding = false;
    Row row;
    At left = At::Eof;
    std::size_t leftPlace = 0;
  };
  bool next();
  bool previous();

  std::vector<Row> rows_;
  At at_ = At::Eof;
  std::size_t place_ = 0;
  std::optional<Pending> pending_;
};

}  // namespace kv::test
