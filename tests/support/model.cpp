// SPDX-License-Identifier: Apache-2.0
#include "support/model.h"

#include <algorithm>
#include <cctype>

namespace kv::test {

namespace {

constexpr int kNoRow = 3021;
constexpr int kNotNow = 3219;

std::string lower(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

}  // namespace

ModelSet::ModelSet(std::vector<Row> rows) : rows_(std::move(rows)) {
  at_ = rows_.empty() ? At::Eof : At::Row;
}

int ModelSet::count() const {
  return static_cast<int>(
      std::count_if(rows_.begin(), rows_.end(), [](const Row& r) { return !r.hole; }));
}

bool ModelSet::bof() const {
  return !adding() && (at_ == At::Bof || (at_ == At::Eof && count() == 0));
}
bool ModelSet::eof() const {
  return !adding() && (at_ == At::Eof || (at_ == At::Bof && count() == 0));
}

const ModelSet::Row* ModelSet::current() const {
  if (pending_) return &pending_->row;
  return at_ == At::Row && !rows_[place_].hole ? &rows_[place_] : nullptr;
}

bool ModelSet::next() {
  if (at_ == At::Eof) return false;
  std::size_t p = at_ == At::Bof ? 0 : place_ + 1;
  while (p < rows_.size() && rows_[p].hole) ++p;
  at_ = p < rows_.size() ? At::Row : At::Eof;
  place_ = p;
  return at_ == At::Row;
}

bool ModelSet::previous() {
  if (at_ == At::Bof) return false;
  std::size_t p = at_ == At::Eof ? rows_.size() : place_;
  while (p > 0 && rows_[p - 1].hole) --p;
  at_ = p > 0 ? At::Row : At::Bof;
  place_ = p > 0 ? p - 1 : 0;
  return at_ == At::Row;
}

int ModelSet::moveFirst() {
  update();
  if (count() == 0) return kNoRow;
  at_ = At::Bof;
  next();
  return 0;
}

int ModelSet::moveLast() {
  update();
  if (count() == 0) return kNoRow;
  at_ = At::Eof;
  previous();
  return 0;
}

int ModelSet::moveNext() {
  update();
  if (at_ == At::Eof || (at_ == At::Bof && count() == 0)) return kNoRow;
  next();
  return 0;
}

int ModelSet::movePrevious() {
  update();
  if (at_ == At::Bof || (at_ == At::Eof && count() == 0)) return kNoRow;
  previous();
  return 0;
}

int ModelSet::move(int rows) {
  update();
  if (count() == 0 && at_ != At::Row) return kNoRow;
  if ((rows > 0 && at_ == At::Eof) || (rows < 0 && at_ == At::Bof)) return kNoRow;
  for (int i = 0; i < rows && next(); ++i) {
  }
  for (int i = 0; i > rows && previous(); --i) {
  }
  return 0;
}

int ModelSet::goTo(std::size_t slot) {
  update();
  if (rows_[slot].hole) return kNoRow;
  at_ = At::Row;
  place_ = slot;
  return 0;
}

int ModelSet::find(std::size_t field, const std::string& value, bool forward) {
  update();
  const auto step = [&] { return forward ? next() : previous(); };
  bool on = at_ == At::Row && !rows_[place_].hole;
  if (!on) {
    const bool canStart = at_ == At::Row || (forward ? at_ == At::Bof : at_ == At::Eof);
    on = canStart && step();
  }
  while (on) {
    const auto& text = rows_[place_].fields[field];
    if (text && lower(*text) == lower(value)) return 0;
    on = step();
  }
  at_ = forward ? At::Eof : At::Bof;
  return 0;
}

int ModelSet::set(std::size_t field, std::optional<std::string> value) {
  if (!pending_) {
    if (current() == nullptr) return kNoRow;
    pending_ = Pending{.adding = false, .row = rows_[place_]};
  }
  pending_->row.fields[field] = std::move(value);
  return 0;
}

int ModelSet::addNew(std::int32_t id) {
  update();
  Row row;
  row.id = id;
  row.fields.resize(rows_.empty() ? 2 : rows_[0].fields.size());
  pending_ = Pending{.adding = true, .row = std::move(row), .left = at_, .leftPlace = place_};
  return 0;
}

int ModelSet::update() {
  if (!pending_) return 0;
  if (pending_->adding) {
    rows_.push_back(pending_->row);
    at_ = At::Row;
    place_ = rows_.size() - 1;
  } else {
    rows_[place_] = pending_->row;
  }
  pending_.reset();
  return 0;
}

int ModelSet::cancel() {
  if (adding()) {
    at_ = pending_->left;
    place_ = pending_->leftPlace;
  }
  pending_.reset();
  return 0;
}

int ModelSet::remove() {
  if (adding()) return kNotNow;
  if (at_ != At::Row || rows_[place_].hole) return kNoRow;
  rows_[place_].hole = true;
  pending_.reset();
  return 0;
}

}  // namespace kv::test
