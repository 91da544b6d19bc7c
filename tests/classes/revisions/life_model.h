// SPDX-License-Identifier: Apache-2.0
// What a register must hold after each thing that happens to its revisions: the rules on plain
// structs, without record sets, transactions or SQL, to compare the library with.
#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace kv::test {

// A value as TestRegister shows it: "~" for Null, dates as month/day/year.
using Cell = std::string;
inline const Cell kNothing = "~";

struct LifeRevision {
  int id = 0;
  Cell document, level, user1, user2, change, location, effective, responsible;
  int turn = 0;
  int status = 2;
  [[nodiscard]] std::string text() const;
};

struct LifeApproval {
  Cell user, order;
  int status = 0;
  Cell by = kNothing, day = kNothing, notes = kNothing;
  [[nodiscard]] std::string text() const;
};

struct LifeAction {
  Cell assigneeId, assignee, subject, description, originator, originatorId, opened, due;
  Cell completed = kNothing, closed = kNothing;
  Cell database, reference, type = "1";
  [[nodiscard]] std::string text() const;
};

struct LifeDocument {
  Cell title, level, effective, current;
  bool secured = false;
  [[nodiscard]] std::string text() const;
};

struct LifeCopy {
  Cell user, document;
  bool hard = false;
  Cell revision;
  [[nodiscard]] std::string text() const;
};

// A user's name where users are kept, and where profiles are.
struct LifeUser {
  Cell name, profileName;
};

// Who is logged in.
struct LifeActor {
  std::string id, name;
  bool administrator = false;
  bool ownsAll = false;  // holds the right to act as owner of every document
};

struct LifeSettings {
  std::string options, ownerRights;
  Cell database, revisionWord, documentWord, originatorId;
  std::optional<int> originator;
  // Settings are counted from 1.
  [[nodiscard]] bool option(std::size_t n) const;
  [[nodiscard]] bool ownersOverride() const;
};

// What an operation answers: an error's number, or True or False where it gives one.
struct LifeAnswer {
  int error = 0;
  bool yes = true;
  friend bool operator==(const LifeAnswer&, const LifeAnswer&) = default;
};

class LifeModel {
 public:
  static constexpr int kNoRow = 3021;
  static constexpr int kDocumentNotThere = -2147221464;

  // What the register held at the beginning.
  LifeSettings settings;
  std::chrono::sys_days today{};
  std::map<std::string, LifeUser> users;
  std::map<std::string, LifeDocument> documents;
  std::set<std::pair<std::string, std::string>> owners;    // document, user
  std::map<std::string, std::vector<LifeApproval>> lists;  // of documents, in their order
  std::map<int, LifeRevision> revisions;
  std::map<int, std::vector<LifeApproval>> approvals;
  std::map<int, LifeAction> actions;
  std::map<int, LifeCopy> copies;

  // Actions that the last operation has sent; the register numbers them.
  std::vector<LifeAction> sent;
  // Which of its cases the last operation was.
  std::string happened;

  // Each takes the revision's row in the caller's hands, nothing when there is none, and changes
  // it; keep() is the caller's saving it.
  LifeAnswer route(const LifeActor& actor, LifeRevision* row);
  LifeAnswer decide(const LifeActor& actor, LifeRevision* row, int decision, const std::string& by,
                    const std::string& approver, bool send);
  LifeAnswer notify(const LifeActor& actor, LifeRevision* row, bool send);
  LifeAnswer setCurrent(const LifeActor& actor, LifeRevision* row, bool documentInSet, bool send);
  void keep(const LifeRevision& row);

  LifeAnswer canApprove(const LifeActor& actor, const std::string& user, int id,
                        const std::string& approvingFor);
  void saveNotes(const std::string& notes, const std::string& user, int id);
  // The two texts for where a revision stands; nothing where the turn is nobody's.
  [[nodiscard]] std::optional<std::string> loadedStatus(const LifeRevision& row) const;
  [[nodiscard]] std::optional<std::string> listedStatus(const LifeRevision& row) const;
  // The numbers of a user's actions of this database.
  [[nodiscard]] std::vector<int> actionsOf(const std::string& user, bool closedToo) const;

  [[nodiscard]] Cell day(int after = 0) const;
  // The approver whose turn it is, if it is anybody's.
  [[nodiscard]] const LifeApproval* turn(const LifeRevision& row) const;

 private:
  enum class Signer { Nobody, Originator, Actor };
  [[nodiscard]] Signer signerOfApprovals() const;
  [[nodiscard]] Signer signerOfReleases() const;
  [[nodiscard]] Cell userName(const Cell& id) const;
  [[nodiscard]] std::string statusWith(const LifeRevision& row, const Cell& name) const;
  [[nodiscard]] LifeAction action(const LifeActor& actor, Signer signer) const;
  void tell(const LifeActor& actor, const Cell& user, const std::string& subject,
            const std::string& description, const Cell& reference);
};

// Texts that differ in case alone are one identifier.
[[nodiscard]] bool sameIdentifier(const std::string& a, const std::string& b);

}  // namespace kv::test
