// SPDX-License-Identifier: Apache-2.0
// Who has a manual, and the numbers of its hard copies.
#include <unordered_set>

#include "classes/manuals/manual.h"
#include "classes/session/vesk.h"
#include "common/text.h"
#include "common/text_key.h"
#include "data/operation.h"
#include "data/sql_text.h"
#include "recordset/text_field.h"

namespace kv {

namespace {

constexpr const char* kFirstNumber = "0001";
// Entries on personal lists have no number.
constexpr const char* kNoNumber = "-1";

// What is looked up in a transaction, to be written in it, must still hold then: nobody else gives
// or changes numbers of this manual until it ends. Alone, a look says only how it is.
void keepNumbers(const Ref<kvConnection>& connection, const std::string& manual) {
  if (connection->database()->isWriting())
    lockRows(connection, "Manuals", "ManualID", outOfQuotes(manual));
}

// As texts are compared.
std::unordered_set<std::string> numbersOf(Recordset& copies) {
  std::unordered_set<std::string> out;
  const auto number = copies.Fields("CopyNumber");
  for (copies.MoveFirst(); !copies.Eof(); copies.MoveNext()) out.insert(foldKey(number->Text()));
  return out;
}

}  // namespace

Ref<Recordset> clsVeskManual::Copies(const std::string& Manid, bool AllFields) {
  const std::string manual = inQuotes(Manid);
  if (!AllFields)
    return dataServer_->open(
        "Select Distinct Personals.UserID, Personals.CopyNumber from Personals Where "
        "Personals.ManualID = '" +
        manual + "' and Personals.HardCopy <> 0");
  return oVesk_->MainUser()->UserRecords(
      dataServer_->open("Select Personals.UserID From Personals Where Personals.ManualID = '" +
                        manual + "' and Personals.hardcopy <> 0"));
}

Ref<Recordset> clsVeskManual::Users(const std::string& Manid, bool AllFields) {
  const std::string manual = inQuotes(Manid);
  if (AllFields)
    return dataServer_->open(
        "Select Distinct VeskProfiles.* from Personals Left Join VeskProfiles On "
        "Personals.userid = veskprofiles.userid where Personals.manualid = '" +
        manual + "' and Personals.hardcopy = false");
  return dataServer_->open(
      "Select Distinct Personals.UserID from Personals where Personals.manualid = '" + manual +
      "' and Personals.hardcopy = 0");
}

std::string clsVeskManual::NextCopyNumber(const std::string& Manid) {
  // So many numbers are asked for one by one. Where more follow each other, those that are among
  // the copies are passed over: each question reads all copies of the manual again.
  constexpr int kAskedFor = 8;
  keepNumbers(dataServer_->Connection(), inQuotes(Manid));
  const auto copies = Copies(Manid);
  if (copies->RecordCount() <= 0) return kFirstNumber;
  copies->MoveLast();
  std::string number = incrementSuffix(fieldText(*copies, "CopyNumber"));
  const std::string ofManual = "Select CopyNumber From Personals Where ManualID = '" +
                               inQuotes(Manid) + "' and HardCopy <> 0 and CopyNumber = '";
  std::unordered_set<std::string> known;
  for (int asked = 1; dataServer_->open(ofManual + doubledQuotes(number) + "'")->RecordCount() > 0;
       ++asked) {
    number = incrementSuffix(number);
    if (asked == kAskedFor) known = numbersOf(*copies);
    while (known.count(foldKey(number)) > 0) number = incrementSuffix(number);
  }
  copies->Close();
  return number;
}

bool clsVeskManual::DuplicateCopyNumber(const std::string& ManualID, const std::string& CopyNum) {
  const std::string number = "CopyNumber = '" + inQuotes(CopyNum) + "'";
  keepNumbers(dataServer_->Connection(), inQuotes(ManualID));
  const auto copies = Copies(ManualID);
  copies->Find(number);
  return !copies->Eof();
}

void clsVeskManual::ChangeCopyNumber(const std::string& ManualID, const std::string& OldNumber,
                                     const std::string& NewNumber) {
  const std::string statement = "Update Personals Set CopyNumber = '" + inQuotes(NewNumber) +
                                "' Where ManualID = '" + inQuotes(ManualID) +
                                "' and CopyNumber = '" + inQuotes(OldNumber) + "'";
  Operation operation(dataServer_->Connection(), "Manuals", "ManualID", outOfQuotes(ManualID));
  dataServer_->execute(statement);
  operation.commit();
}

bool clsVeskManual::ReleaseCopy(const std::string& Manid, const std::string& UserID,
                                const std::string& CopyNumber) {
  return oVesk_->ManualUserRelation(Manid, UserID, true, CopyNumber, false);
}

bool clsVeskManual::CollectCopy(const std::string& Manid, const std::string& UserID,
                                const std::string& CopyNumber) {
  return oVesk_->ManualUserRelation(Manid, UserID, true, CopyNumber, true);
}

bool clsVeskManual::AddUser(const std::string& Manid, const std::string& UserID) {
  return oVesk_->ManualUserRelation(Manid, UserID, false, kNoNumber, false);
}

bool clsVeskManual::RemoveUser(const std::string& Manid, const std::string& UserID) {
  return oVesk_->ManualUserRelation(Manid, UserID, false, kNoNumber, true);
}

}  // namespace kv
