// SPDX-License-Identifier: Apache-2.0
// The register beside the model: its tables, and every list that shows them.
#pragma once

#include <fmt/format.h>

#include "classes/relations/relation_walk_register.h"

namespace kv::test {

class RelationLists : public RelationWalkRegister {
 protected:
  [[nodiscard]] Places placesOf(const std::string& sql) const;
  static Texts shownPlaces(const Places& places, bool single);
  // Of those that stood at one place before, any may have got any of their new ones.
  void expectPlaces(Places& model, const Places& actual, bool single);
  void compareContents(const std::string& manual);
  void compareRouting(const std::string& document);
  // Every row of the tables that relations change.
  void compareTables();
  template <class Meets>
  Texts releasesWhere(const Meets& meets) const {
    Texts out;
    for (const auto& [release, held] : model_.holdings)
      if (meets(held)) out.push_back(std::to_string(release));
    return sorted(std::move(out));
  }
  template <class Tell, class Meets>
  Texts holdersWhere(const Meets& meets, const Tell& tell) const {
    Texts out;
    for (const auto& [release, held] : model_.holdings)
      if (meets(held)) out.push_back(tell(held));
    return distinct(std::move(out));
  }
  void compareDocument(const std::string& id);
  void compareManual(const std::string& id);
  void compareUser(const std::string& id);
  template <class Meets>
  Texts releaseLines(const Meets& meets) const {
    Texts out;
    for (const auto& [release, held] : model_.holdings) {
      if (!meets(held)) continue;
      const auto document = model_.documents.find(held.document);
      out.push_back(fmt::format(
          "{}|{}|{}|{}|{}|{}", release, held.document, held.manual, held.copy, held.revision,
          document == model_.documents.end() ? kNullCell : document->second.revision));
    }
    return sorted(std::move(out));
  }
  void compareLists(int some);
};

}  // namespace kv::test
