// SPDX-License-Identifier: Apache-2.0
// Which document is meant, and what the logged-in user may do with it.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>

#include "desk/session.h"
#include "desk/transaction.h"

namespace kv::desk {

struct DocumentKey {
  std::string id;      // as the register has it
  std::string joined;  // as the library joins it between apostrophes
  bool owned = false;  // by the logged-in user, or by everybody's owner
};

// The document with this identifier or, when there is none, with this number. Secured documents are
// there only for administrators and their owners. Raises 5 when there is none, and when there are
// several: which of them was meant is not for us to guess.
[[nodiscard]] DocumentKey findDocument(const Session& session, const std::string& document);

// The same, and nobody else changes or deletes it until the transaction ends.
[[nodiscard]] DocumentKey findAndHoldDocument(const Session& session, Transaction& transaction,
                                              const std::string& document);

// Whether a document is secured from the logged-in user.
[[nodiscard]] bool isHidden(const Session& session, const std::string& documentId);
// The same of all documents, for lists of many.
class HiddenDocuments {
 public:
  explicit HiddenDocuments(const Session& session);
  [[nodiscard]] bool contains(std::string_view documentId) const;

 private:
  std::set<std::string> ids_;  // as they are compared
};
// Whether the logged-in user counts as its owner: is one, or may act as one everywhere.
[[nodiscard]] bool isOwner(const Session& session, const std::string& documentId);

// Raises 70 unless the user holds the user right, or owns the document and owners hold the owner
// right. An owner is told the owner right, anybody else the user right.
void requireFieldRight(const Session& session, const DocumentKey& document, std::int16_t userRight,
                       std::int16_t ownerRight);
// Raises 70 unless the user counts as an owner of the document.
void requireOwner(bool owned);

}  // namespace kv::desk
