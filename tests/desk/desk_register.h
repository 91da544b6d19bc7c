// SPDX-License-Identifier: Apache-2.0
// A register for the use cases of those who keep one, and sessions of its users.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "desk/session.h"
#include "support/error_check.h"
#include "support/test_register.h"

namespace kv::test {

// Users: Anna (User901), an administrator; Bert (User902) and Carla (User903), who may nothing.
// Documents: D1, P-1, Plan's end, controlled, in force as A (revision 901), while B (902) is being
// prepared; D2, P-2, Budget, controlled and secured, in force as 1 (revision 903). Manuals: M1,
// Handbook, with D1 in it; M2, Annex, empty. Queries: 1, All documents.
class DeskTest : public testing::Test {
 protected:
  DeskTest();
  ~DeskTest() override;
  DeskTest(const DeskTest&) = delete;
  DeskTest& operator=(const DeskTest&) = delete;
  DeskTest(DeskTest&&) = delete;
  DeskTest& operator=(DeskTest&&) = delete;

  // A session of a user, open until the test ends; of one with these rights and no others.
  [[nodiscard]] desk::Session as(const std::string& name);
  [[nodiscard]] desk::Session as(const std::string& name, const std::vector<int>& rights);

  // Owners of documents may do this and nothing else.
  void setOwnerRights(const std::vector<int>& rights) const;
  void own(const std::string& documentId, const std::string& userId) const;

  // The use case says no with this number and text, and changes nothing.
  void expectRefused(std::int32_t number, const std::string& text,
                     const std::function<void()>& useCase) const;
  // It takes a right, or whatever the text names, that the user lacks.
  void expectDenied(const std::string& right, const std::function<void()>& useCase) const;
  // What is given makes no sense, whatever the register holds.
  void expectWrongInput(const std::string& text, const std::function<void()>& useCase) const;

  TestRegister reg_;

 private:
  std::vector<Ref<clsVesk>> open_;
};

}  // namespace kv::test
