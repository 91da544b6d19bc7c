// SPDX-License-Identifier: Apache-2.0
// Who has a manual, and the numbers of its hard copies.
#include "classes/manuals/manual.h"
#include "classes/session/vesk.h"
#include "common/text.h"
#include "data/operation.h"
#include "data/sql_text.h"
#include "recordset/text_field.h"

namespace kv {

namespace {

constexpr const char* kFirstNumber = "0001";
// Entries on personal lists have no number.
constexpr const char* kNoNumber = "-1";

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
  const auto copies = Copies(Manid);
  if (copies->RecordCount() <= 0) return kFirstNumber;
  copies->MoveLast();
  std::string number = incrementSuffix(fieldText(*copies, "CopyNumber"));
  copies->Close();
  const std::string ofManual = "Select CopyNumber From Personals Where ManualID = '" +
                               inQuotes(Manid) + "' and HardCopy <> 0 and CopyNumber = '";
  while (dataServer_->open(ofManual + doubledQuotes(number) + "'")->RecordCount() > 0)
    number = incrementSuffix(number);
  return number;
}

bool clsVeskManual::DuplicateCopyNumber(const std::string& ManualID, const std::string& CopyNum) {
  const std::string number = "CopyNumber = '" + inQuotes(CopyNum) + "'";
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
