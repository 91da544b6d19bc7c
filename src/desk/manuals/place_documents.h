// SPDX-License-Identifier: Apache-2.0
// Which documents are in a manual, and in which order.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "desk/session.h"

namespace kv::desk {

// A document in a manual, as it was put, taken or moved.
struct Placed {
  std::string manualId;
  std::string documentId;
  std::int32_t place = 0;   // counted from 1; 0 for one that was taken out
  std::int32_t copies = 0;  // of the manual that it went into or out of
};

// Puts a document into a manual and into all copies of it; without a place it comes behind the
// documents whose order has been settled. The library tests the right.
Placed putIntoManual(const Session& session, const std::string& manual, const std::string& document,
                     std::optional<std::int32_t> place = {});

// Takes a document out of a manual and out of all copies of it. The library tests the right.
Placed takeOutOfManual(const Session& session, const std::string& manual,
                       const std::string& document);

// Moves a document within a manual. The register keeps an order, no places: mostly the document
// comes to stand behind the one at the place given; the answer says where it stands. Takes the
// right to add documents to manuals, as a user or as the document's owner.
Placed moveInManual(const Session& session, const std::string& manual, const std::string& document,
                    std::int32_t place);

}  // namespace kv::desk
