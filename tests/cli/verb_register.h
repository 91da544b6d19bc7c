// SPDX-License-Identifier: Apache-2.0
// A register to run verbs on: three users, three documents with revisions, and two saved queries.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cli/program.h"
#include "support/test_register.h"

namespace kv::test {

// Numbers are high, so that examples can be imported beside them.
//
//   users      Anna (User901), an administrator; Bert (User902) and Carla (User903), who may
//   nothing documents  D1, P-1, Plan's end: controlled, in force as A (revision 901); B (902) is
//   prepared by
//              Bert. D2, P-2, Budget: controlled, secured, in force as 1 (revision 903). D3, P-3,
//              Sketch: uncontrolled, its revision 904 kept.
//   queries    1 All documents; 2 Plans, whose title contains "plan"
class VerbRegister {
 public:
  VerbRegister();

  [[nodiscard]] const std::string& path() const { return reg_.path(); }
  [[nodiscard]] std::string file(const std::string& name) const { return reg_.folder().file(name); }

  // The user's rights are these and no others.
  void setRights(const std::string& userId, const std::vector<int>& rights) const;
  // Owners of documents may do this and nothing else.
  void setOwnerRights(const std::vector<int>& rights) const;
  void own(const std::string& documentId, const std::string& userId) const;

  // Runs a verb, such as "document show", as a user; the words follow the register.
  [[nodiscard]] Outcome as(const std::string& user, const std::string& verb,
                           const std::vector<std::string>& words = {}) const;
  // The same as Anna, expecting that it is done; what it printed.
  [[nodiscard]] std::string done(const std::string& verb,
                                 const std::vector<std::string>& words = {}) const;

  void execute(const std::string& sql) const { (void)reg_.execute(sql); }
  [[nodiscard]] std::vector<std::string> rows(const std::string& sql) const {
    return reg_.rows(sql);
  }
  [[nodiscard]] std::string value(const std::string& sql) const { return reg_.value(sql); }
  // Everything the file holds.
  [[nodiscard]] std::vector<std::string> everything() const;

 private:
  TestRegister reg_;
};

class VerbTest : public testing::Test {
 protected:
  // Runs a verb that must fail, changing nothing and printing nothing, and returns what it says.
  [[nodiscard]] std::string refused(const std::string& user, const std::string& verb,
                                    const std::vector<std::string>& words, int code = 1) const;

  VerbRegister reg_;
};

[[nodiscard]] inline std::string denied(const std::string& right) {
  return "error 70 (kvvesk): Permission denied: " + right + "\n";
}

}  // namespace kv::test
