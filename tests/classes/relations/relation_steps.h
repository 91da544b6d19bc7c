// SPDX-License-Identifier: Apache-2.0
// What happens in a walk: each step chooses by chance who does what, and compares what comes of it.
#pragma once

#include "classes/relations/relation_lists.h"

namespace kv::test {

class RelationSteps : public RelationLists {
 protected:
  void documentInManual();
  void owner();
  void approver();
  void moveApprover(std::string document);
  void moveDocument();
  void giveDocument();
  void takeDocument();
  void giveManual();
  // The next number, as it follows from the last row of the list.
  std::string nextNumber(const std::string& manual);
  void giveNextManual();
  void takeManual();
  void changeNumber();
  // By a statement, as other programs do.
  void changePlaces();
  void changeDocument();
  void changeRights();

  // One of these.
  void step();
};

}  // namespace kv::test
