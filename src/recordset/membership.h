// SPDX-License-Identifier: Apache-2.0
// Which rows a record set consists of: slots in their order, some of them holes. Requery begins a
// new one; bookmarks and places belong to one.
#pragma once

#include <cstdint>
#include <vector>

namespace kv {

class Membership {
 public:
  Membership(std::uint32_t generation, std::size_t slots) noexcept
      : generation_(generation), slots_(slots) {}

  [[nodiscard]] std::uint32_t generation() const noexcept { return generation_; }
  [[nodiscard]] std::size_t slots() const noexcept { return slots_; }
  // A slot whose row was deleted through the set, or whose addition was undone.
  [[nodiscard]] bool isHole(std::size_t slot) const noexcept {
    return slot < states_.size() && states_[slot] != State::Row;
  }
  [[nodiscard]] bool isUndone(std::size_t slot) const noexcept {
    return slot < states_.size() && states_[slot] == State::Undone;
  }
  [[nodiscard]] std::size_t holes() const noexcept { return holes_; }

  // Appends a slot and returns it.
  std::size_t add() noexcept { return slots_++; }
  void deleted(std::size_t slot) { become(slot, State::Deleted); }
  // The deletion was undone.
  void restored(std::size_t slot) { become(slot, State::Row); }
  // The addition was undone.
  void undone(std::size_t slot) { become(slot, State::Undone); }

 private:
  enum class State : std::uint8_t { Row, Deleted, Undone };
  void become(std::size_t slot, State state) {
    if (states_.size() <= slot) states_.resize(slot + 1, State::Row);
    if (states_[slot] != State::Row) --holes_;
    if (state != State::Row) ++holes_;
    states_[slot] = state;
  }

  std::uint32_t generation_;
  std::size_t slots_;
  std::vector<State> states_;  // up to the last one that is or was a hole
  std::size_t holes_ = 0;
};

}  // namespace kv
