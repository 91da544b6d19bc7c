// SPDX-License-Identifier: Apache-2.0
// Copies that users hold, on paper and on personal lists, each with the revision it is of and the
// one in force.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "desk/answer_set.h"
#include "desk/session.h"

namespace kv::desk {

// Which copies are meant; what is empty or 0 keeps none out. Identifiers as the library joins them
// between apostrophes.
struct CopyFilter {
  std::string user;
  std::string manual;
  std::string document;
  std::int32_t manualQuery = 0;
  std::int32_t documentQuery = 0;
  bool hard = true;
  bool listed = true;  // on personal lists
};

// Whether it is of the revision in force, which the copy of a document that is gone never is. No
// revision of an uncontrolled document is ever in force.
enum class CopyState : std::uint8_t { Current, Stale, Uncontrolled };

struct HeldCopy {
  Variant release, userId, hard, manual, number, documentId, documentNumber, title, level,
      currentLevel;
  CopyState state = CopyState::Current;

  [[nodiscard]] const char* stateText() const noexcept;
};

// Those that the filter lets through, but for secured documents that are not there for the
// logged-in user.
[[nodiscard]] std::vector<HeldCopy> copiesHeld(const Session& session, const CopyFilter& filter);

// Sorts an answer with the columns HardCopy, ManualName, CopyNumber, DocumentNumber, DocumentTitle
// and ReleaseID: paper first, and what belongs to one copy of a manual together. `first` goes
// before that.
void sortCopies(const Session& session, AnswerSet& answer, const std::string& first = {});

}  // namespace kv::desk
