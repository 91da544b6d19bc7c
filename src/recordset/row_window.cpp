// SPDX-License-Identifier: Apache-2.0
#include "recordset/row_window.h"

#include <algorithm>

#include "recordset/row_view.h"

namespace kv {

namespace {

constexpr std::size_t kFirstReadAhead = 8;
constexpr std::size_t kManyRows = 4000;

}  // namespace

void RowWindow::load(RowSource& source, const RowView& view, std::size_t place) {
  if (!source.connected()) raise(kNoConnection);
  const auto stamp = source.stamp();
  const bool fresh = stamp_ == stamp;
  std::size_t from = place;
  if (fresh && place == first_ + block_.rows()) {
    readAhead_ = std::clamp(readAhead_ * 4, std::min(kFirstReadAhead, most_), most_);
  } else if (fresh && place + 1 == first_) {
    readAhead_ = std::clamp(readAhead_ * 4, std::min(kFirstReadAhead, most_), most_);
    from = place + 1 - std::min(readAhead_, place + 1);
  } else {
    readAhead_ = least_;
  }
  const auto to = std::min(std::max(place + 1, from + readAhead_), view.places(source));
  std::vector<std::size_t> slots;
  slots.reserve(to - from);
  for (auto p = from; p < to; ++p) slots.push_back(view.slotAt(p));
  forget();  // should the reading fail
  source.read(slots, block_);
  first_ = from;
  stamp_ = stamp;
}

void RowWindow::readMany() noexcept { least_ = most_ = readAhead_ = kManyRows; }

void RowWindow::takeHead(RowSource& source) {
  forget();
  if (!source.takeHead(block_)) return;
  first_ = 0;
  stamp_ = source.stamp();
}

}  // namespace kv
