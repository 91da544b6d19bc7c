// SPDX-License-Identifier: Apache-2.0
// Criteria values with all that the two texts of a query can make of them, and criteria as a plain
// map: for restatements of the builders that share no code with them.
#pragma once

#include <array>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "common/error.h"
#include "common/variant.h"

namespace kv::test {

// A value: its text, and its year, month and day when it can be taken for a date.
struct SampleValue {
  Variant value;
  bool applies;
  std::string text;
  std::optional<std::array<int, 3>> day;
};

inline const std::vector<SampleValue>& sampleValues() {
  static const std::vector<SampleValue> samples = {
      {Variant(), false, "", std::nullopt},
      {Null, false, "", std::nullopt},
      {"", false, "", std::nullopt},
      {" ", true, " ", std::nullopt},
      {"X", true, "X", std::nullopt},
      {"O'Brien's", true, "O'Brien's", std::nullopt},
      {"''", true, "''", std::nullopt},
      {"a\"b\"'\"", true, "a\"b\"'\"", std::nullopt},
      {"100% [of] *?#_", true, "100% [of] *?#_", std::nullopt},
      {"5", true, "5", std::nullopt},
      {5, true, "5", std::array{1900, 1, 4}},
      {2.5, true, "2.5", std::array{1900, 1, 1}},
      {"2001-04-01", true, "2001-04-01", std::array{2001, 4, 1}},
      {"12/31/1999", true, "12/31/1999", std::array{1999, 12, 31}},
      {Date(CalendarTime{2001, 3, 9, 0, 0, 0, 0}), true, "3/9/2001", std::array{2001, 3, 9}},
      {Date(CalendarTime{2010, 11, 12, 14, 5, 9, 0}), true, "11/12/2010 2:05:09 PM",
       std::array{2010, 11, 12}},
  };
  return samples;
}

// An operator code: the number that it is, or the error of reading it as one.
struct SampleCode {
  Variant value;
  double code;
  std::int32_t error;
};

inline const std::vector<SampleCode>& sampleCodes() {
  static const std::vector<SampleCode> samples = {{std::int16_t{0}, 0, 0},
                                                  {std::int16_t{1}, 1, 0},
                                                  {std::int16_t{2}, 2, 0},
                                                  {std::int16_t{3}, 3, 0},
                                                  {std::int16_t{4}, 4, 0},
                                                  {std::int16_t{5}, 5, 0},
                                                  {-1, -1, 0},
                                                  {"2", 2, 0},
                                                  {4.0, 4, 0},
                                                  {1.5, 1.5, 0},
                                                  {Variant(), 0, 0},
                                                  {Null, 0, kInvalidNull},
                                                  {"two", 0, kTypeMismatch},
                                                  {"", 0, kTypeMismatch}};
  return samples;
}

struct Failure {
  std::int32_t number;
};

// Criteria by name; a name that is not there fails as a missing key.
template <class Sample>
class SampleMap {
 public:
  void set(const std::string& name, const Sample& sample) { samples_[name] = &sample; }
  void drop(const std::string& name) { samples_.erase(name); }
  const Sample& operator()(const std::string& name) const {
    const auto found = samples_.find(name);
    if (found == samples_.end()) throw Failure{kInvalidCall};
    return *found->second;
  }

 private:
  std::map<std::string, const Sample*> samples_;
};

inline double codeOf(const SampleCode& sample) {
  if (sample.error != 0) throw Failure{sample.error};
  return sample.code;
}

inline std::string dayOf(const SampleValue& sample) {
  if (!sample.day) throw Failure{kTypeMismatch};
  const auto& day = *sample.day;
  return std::to_string(day[0]) + "," + std::to_string(day[1]) + "," + std::to_string(day[2]);
}

inline std::string doubled(const std::string& text) {
  std::string out;
  for (const char c : text) {
    out += c;
    if (c == '\'') out += '\'';
  }
  return out;
}

// What a builder gives: its text, or "error" and the number it raises.
template <class Builder>
std::string outcome(Builder build) {
  try {
    return build();
  } catch (const Failure& failure) {
    return "error " + std::to_string(failure.number);
  } catch (const Error& error) {
    return "error " + std::to_string(error.number());
  }
}

template <class T>
const T& pick(const std::vector<T>& from, std::mt19937& random) {
  return from[random() % from.size()];
}

}  // namespace kv::test
