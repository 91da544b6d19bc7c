// SPDX-License-Identifier: Apache-2.0
// The root object's operations on actions: things for people to do.
#include "classes/session/vesk.h"
#include "classes/session/vesk_errors.h"
#include "common/convert.h"
#include "common/text.h"
#include "data/operation.h"
#include "data/sql_text.h"
#include "recordset/database.h"
#include "user/action_batch.h"

namespace kv {

bool clsVesk::SetExternalActionSystem(bool TurnOn, const std::string& ConnectionString) {
  if (!TurnOn) {
    Execute("Update VeskCOnfig Set ExternalActionSystem = False");
    return true;
  }
  const auto users = makeRef<kvUser>();
  if (ConnectionString.empty()) raise(kNoLocation);
  try {
    users->OpenConnection(std::string(kUserDatabaseAt) + ConnectionString);
  } catch (const Error& e) {
    throw Error(e.number(), e.source(), std::string(kUserDatabaseRefused) + e.description(),
                e.where(), e.cause());
  }
  users->DataServer()->Close();
  // A path, which has just been opened as it stands, and so is stored as it stands.
  Execute("Update VeskConfig Set ExternalActionSystem = -1, UserDBLocation = '" +
          doubledQuotes(ConnectionString) + "'");
  return true;
}

bool clsVesk::hasActionSystem() const {
  const auto connection = mainUser_ ? mainUser_->DataServer()->Connection() : nullptr;
  if (!connection) return false;
  const auto& users = connection->database()->other();
  return users == nullptr || users->isOpen();
}

Ref<Recordset> clsVesk::ActionRecord() {
  const auto source = dataServer_->Connection()->OpenRecordset(
      "Select * From Actions Where ActionID = -1", kKeyset, kPessimistic);
  auto record = Recordset::create();
  for (std::int32_t i = 0; i < source->Fields().Count(); ++i) {
    const auto field = source->Fields(i);
    record->Fields().Append(field->Name(), field->Type(), field->DefinedSize(),
                            field->Attributes());
  }
  record->CursorType(kKeyset);
  record->LockType(kOptimistic);
  record->Open();
  source->Close();
  return record;
}

Variant clsVesk::SendActions(const Ref<Recordset>& rsActions, const Ref<Recordset>& rsUsers) {
  const auto sender = hasActionSystem() ? mainUser_->Sender() : Ref<kvSender>();
  if (!sender) raise(kNoActionsToSend);
  if (!rsUsers) return sender->Send(rsActions);
  Variant result;
  if (rsUsers->RecordCount() <= 0) return result;
  savePending(rsActions);
  if (rsActions->Eof() && rsActions->RecordCount() > 0) rsActions->MoveLast();
  const Variant current = rsActions->Bookmark();
  // All users are read before anything is written: each writing would have them read again.
  const auto connection = mainUser_->DataServer()->Connection();
  Operation operation(connection);
  ActionBatch batch(connection, rsActions);
  rsUsers->readMany();
  for (rsUsers->MoveFirst(); !rsUsers->Eof(); rsUsers->MoveNext()) {
    rsActions->Bookmark(current);
    Edit edit(rsActions);
    rsActions->Fields("AssigneeID")->Value(rsUsers->Fields("UserID")->Value());
    rsActions->Fields("Assignee")->Value(rsUsers->Fields("UserName")->Value());
    result = batch.take();
    edit.keep();
  }
  batch.store();
  operation.commit();
  return result;
}

std::string clsVesk::senderOfActions() const {
  return doubledQuotes(joinText(dataServer_->Config()->Value("DBID")));
}

Ref<Recordset> clsVesk::GetActions(const std::string& UserID, bool IncludeClosed) {
  if (!hasActionSystem()) raise(kNoActionsToGet);
  const std::string user =
      UserID.empty() ? doubledQuotes(dataServer_->Profile()->UserID()) : inQuotes(UserID);
  return GetRecordset("Select * From Actions where Assigneeid = '" + user +
                      "' and ReferenceID = '" + senderOfActions() +
                      (IncludeClosed ? "'" : "' and dateclosed is null"));
}

bool clsVesk::HasActions(const std::string& UserID) {
  if (!hasActionSystem()) raise(kNoActionsToHave);
  return GetRecordset("Select * From Actions where Assigneeid = '" + inQuotes(UserID) +
                      "' and ReferenceID = '" + senderOfActions() + "' and isnull(dateclosed)")
             ->RecordCount() > 0;
}

Variant clsVesk::CompleteCloseAction(const std::string& id, const Date& datecompleted,
                                     const Variant& dateclosed) {
  if (!hasActionSystem()) raise(kNoActionsToClose);
  mainUser_->CloseAction(id, datecompleted, dateclosed);
  return {};
}

}  // namespace kv
