// SPDX-License-Identifier: Apache-2.0
// Distribution on the floor: hand-written C over SQLite that reads and writes the same rows in one
// transaction. Where several indexes would do, it names the one that finds least.
#pragma once

#include <cstdint>
#include <string>

#include "distribution_register.h"
#include "floor.h"

namespace kv::bench {

class FloorDistribution {
 public:
  explicit FloorDistribution(const std::string& path) : db_(path) {}

  void putInto(const std::string& manual, const std::string& document);
  void takeOut(const std::string& manual, const std::string& document);
  void giveManual(const std::string& manual);
  void takeManual(const std::string& manual);
  [[nodiscard]] int giveDocument(const std::string& document);
  // With the library's steps: under a key that only the row has, found again by that, and given its
  // own values.
  [[nodiscard]] int giveDocumentInSteps(const std::string& document);
  void takeDocument(int release);

  [[nodiscard]] static std::uint64_t roundTrips() { return 0; }

 private:
  [[nodiscard]] int revisionToGive(const std::string& document);
  void readOwner(const std::string& document);
  void readHeld(const std::string& document);
  int place(const std::string& manual, const std::string& document);
  void requireContents(const std::string& manual);

  FloorDatabase db_;
  FloorStatement begin_{db_, "BEGIN IMMEDIATE"};
  FloorStatement commit_{db_, "COMMIT"};
  FloorStatement document_{
      db_,
      "SELECT Controlled, CurrentRevID FROM Documents WHERE kv_fold(DocumentID) = kv_fold(?1)"};

  FloorStatement owner_{
      db_,
      "SELECT 1 FROM Owners INDEXED BY kv_fold_Owners_DocumentID WHERE kv_fold(DocumentID) = "
      "kv_fold(?1) AND kv_fold(UserID) = 'user1' LIMIT 1"};
  FloorStatement ownerRights_{db_, "SELECT OwnerRights FROM VeskConfig"};

  FloorStatement place_{
      db_,
      "SELECT kv_key FROM ManualContents INDEXED BY kv_fold_ManualContents_DocumentID WHERE "
      "kv_fold(DocumentID) = kv_fold(?2) AND kv_fold(ManualID) = kv_fold(?1)"};
  FloorStatement put_{
      db_, "INSERT INTO ManualContents (ManualID, DocumentID, Position) VALUES (?1, ?2, 100)"};
  FloorStatement toHolders_{
      db_,
      "INSERT INTO Personals (UserID, ManualID, HardCopy, CopyNumber, DocumentID, RevisionID) "
      "SELECT min(UserID), min(ManualID), HardCopy, min(CopyNumber), ?2, ?3 FROM Personals WHERE "
      "kv_fold(ManualID) = kv_fold(?1) GROUP BY kv_fold(UserID), HardCopy, kv_fold(CopyNumber)"};
  FloorStatement takeOut_{db_, "DELETE FROM ManualContents WHERE kv_key = ?1"};
  FloorStatement fromHolders_{
      db_,
      "DELETE FROM Personals INDEXED BY kv_fold_Personals_DocumentID WHERE kv_fold(DocumentID) = "
      "kv_fold(?2) AND kv_fold(ManualID) = kv_fold(?1)"};

  FloorStatement contents_{
      db_, "SELECT 1 FROM ManualContents WHERE kv_fold(ManualID) = kv_fold(?1) LIMIT 1"};
  FloorStatement holds_{
      db_,
      "SELECT 1 FROM Personals INDEXED BY kv_fold_Personals_UserID WHERE kv_fold(UserID) = "
      "kv_fold(?1) AND kv_fold(ManualID) = kv_fold(?2) AND kv_fold(CopyNumber) = kv_fold(?3) AND "
      "HardCopy = -1 LIMIT 1"};
  FloorStatement giveManual_{
      db_,
      "INSERT INTO Personals (ManualID, DocumentID, UserID, RevisionID, HardCopy, CopyNumber) "
      "SELECT c.ManualID, c.DocumentID, ?1, d.CurrentRevID, -1, ?3 FROM ManualContents c JOIN "
      "Documents d ON kv_fold(c.DocumentID) = kv_fold(d.DocumentID) WHERE kv_fold(c.ManualID) = "
      "kv_fold(?2)"};
  FloorStatement takeManual_{
      db_,
      "DELETE FROM Personals INDEXED BY kv_fold_Personals_UserID WHERE kv_fold(UserID) = "
      "kv_fold(?1) AND kv_fold(ManualID) = kv_fold(?2) AND kv_fold(CopyNumber) = kv_fold(?3) AND "
      "HardCopy = -1"};

  FloorStatement held_{
      db_,
      "SELECT ReleaseID, UserID, DocumentID, ManualID, HardCopy, CopyNumber, RevisionID FROM "
      "Personals INDEXED BY kv_fold_Personals_DocumentID WHERE kv_fold(DocumentID) = kv_fold(?1) "
      "AND kv_fold(UserID) = kv_fold(?2) AND kv_fold(ManualID) = '0' AND HardCopy = -1"};
  FloorStatement give_{
      db_,
      "INSERT INTO Personals (UserID, DocumentID, ManualID, HardCopy, RevisionID) VALUES (?1, ?2, "
      "'0', -1, ?3)"};
  FloorStatement number_{
      db_, "UPDATE sqlite_sequence SET seq = seq + 1 WHERE name = 'Personals' RETURNING seq"};
  FloorStatement giveUnderKey_{db_, "INSERT INTO Personals (ReleaseID, UserID) VALUES (?1, ?2)"};
  FloorStatement underKey_{
      db_,
      "SELECT ReleaseID, UserID, DocumentID, ManualID, HardCopy, CopyNumber, RevisionID FROM "
      "Personals WHERE kv_fold(UserID) = kv_fold(?1) ORDER BY ReleaseID"};
  FloorStatement complete_{
      db_,
      "UPDATE Personals SET UserID = ?2, DocumentID = ?3, ManualID = '0', HardCopy = -1, "
      "RevisionID = ?4 WHERE ReleaseID = ?1"};
  FloorStatement released_{db_, "SELECT DocumentID FROM Personals WHERE ReleaseID = ?1"};
  FloorStatement takeBack_{db_, "DELETE FROM Personals WHERE ReleaseID = ?1"};
};

class FloorHoldings {
 public:
  FloorHoldings(const std::string& path, Holdings what);
  [[nodiscard]] std::size_t list(const std::string& user);

 private:
  bool readsOptions_;
  FloorDatabase db_;
  FloorStatement options_{db_, "SELECT ProgramOptions FROM VeskConfig"};
  FloorStatement rows_;
};

}  // namespace kv::bench
