// SPDX-License-Identifier: Apache-2.0
// What documents, manuals, holders, owners and approvers do to each other, told plainly: rows in
// maps and the rules about them, and nothing of how the library works.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace kv::test {

inline const std::string kNullCell = "~";

// Somebody who is logged in.
struct RelationActor {
  std::string id;
  bool administrator = false;
  std::string rights;  // character N for right N

  [[nodiscard]] bool has(int right) const;
};

// What an operation answers: nothing raised, or what.
struct RelationAnswer {
  std::int32_t number = 0;
  std::string source;
  std::string description;

  [[nodiscard]] std::string text() const;
};

struct RelationDocument {
  bool controlled = false;
  std::string revision;  // a number, or kNullCell
};

// A row of the table of copies.
struct Holding {
  std::string user;
  std::string document;
  std::string manual;  // "0" for a document by itself
  bool hard = false;
  std::string copy;  // kNullCell for none
  std::string revision;

  [[nodiscard]] std::string text() const;
};

// Places in an order, by identifier; some have none.
using Places = std::map<std::string, std::optional<double>>;

class RelationModel {
 public:
  std::map<std::string, RelationDocument> documents;
  std::map<std::string, Places> contents;                // by manual
  std::map<std::string, Places> routing;                 // by document
  std::set<std::pair<std::string, std::string>> owners;  // document, user
  std::map<int, Holding> holdings;                       // by release
  std::string ownerRights;

  // Rows that the last operation added, whose numbers are not known yet.
  std::vector<Holding> added;
  // Identifiers that stood at one place when all were given new ones: which of them got which is
  // not promised.
  std::vector<std::vector<std::string>> ties;
  // How many lines of holders the last operation on contents added or removed.
  int affected = 0;
  // What the last operation turned out to be.
  std::string happened;

  RelationAnswer documentManual(const RelationActor& actor, const std::string& manual,
                                const std::string& document, bool remove);
  RelationAnswer owns(const RelationActor& actor, const std::string& document,
                      const std::string& user, bool remove);
  RelationAnswer approves(const RelationActor& actor, const std::string& document,
                          const std::string& user, bool remove);
  RelationAnswer documentUser(const RelationActor& actor, std::string document,
                              const std::string& user, bool hard, bool remove, int release);
  RelationAnswer manualUser(const RelationActor& actor, const std::string& manual,
                            const std::string& user, bool hard, const std::string& copy,
                            bool remove);
  RelationAnswer changeListOrder(const std::string& document, const std::string& moved,
                                 const std::string& before);
  RelationAnswer reposition(const std::string& manual, const std::string& document, int position);
  RelationAnswer changeCopyNumber(const std::string& manual, const std::string& from,
                                  const std::string& to);
  // After a list of hard copies whose last row has the number `last`; nothing for an empty list.
  [[nodiscard]] std::string nextCopyNumber(const std::string& manual,
                                           const std::optional<std::string>& last) const;

  [[nodiscard]] bool userIsOwner(const RelationActor& actor, const std::string& user,
                                 const std::string& document) const;

 private:
  RelationAnswer done(const std::string& what);
  RelationAnswer refused(const std::string& what, std::int32_t code, const std::string& source,
                         const std::string& description);
  RelationAnswer noRow(const std::string& what);
  [[nodiscard]] bool ownersMay(const RelationActor& actor, int ownerRight) const;
  [[nodiscard]] bool asOwner(const RelationActor& actor, const std::string& document,
                             int ownerRight) const;
  [[nodiscard]] bool isControlled(const std::string& document) const;
  [[nodiscard]] bool hasRevision(const std::string& document) const;
  // Gives all of them new places in their present order, from `first` on, `step` apart.
  void renumber(Places& places, double first, double step);
};

}  // namespace kv::test
