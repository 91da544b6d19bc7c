// SPDX-License-Identifier: Apache-2.0
// Stored queries of every kind, through the classes that keep them.
#pragma once

#include <cstdint>
#include <variant>

#include "desk/queries/query_lookup.h"

namespace kv::desk {

class SavedQuery {
 public:
  // Raises 3021 for a query of users or manuals that does not exist.
  static SavedQuery load(const Session& session, const QueryKind& kind, std::int32_t id);
  static SavedQuery add(const Session& session, const QueryKind& kind);
  static void remove(const Session& session, const QueryKind& kind, std::int32_t id);

  [[nodiscard]] StoredQuery& operator*() const;
  [[nodiscard]] StoredQuery* operator->() const { return &**this; }
  void save(const Session& session) const;

 private:
  template <class Query>
  explicit SavedQuery(Ref<Query> query) : query_(std::move(query)) {}

  std::variant<Ref<clsDocumentQuery>, Ref<clsManualQuery>, Ref<clsUserQuery>> query_;
};

}  // namespace kv::desk
