// SPDX-License-Identifier: Apache-2.0
#include "common/cause.h"

namespace kv {

std::string_view sentenceOf(Cause cause) noexcept {
  switch (cause) {
    case Cause::Locked: return "The register is locked by another process.";
    case Cause::ConnectionLost: return "The connection to the server was lost.";
    case Cause::OutcomeUnknown:
      return "The connection to the server was lost while a change was being kept; whether it was "
             "kept is unknown.";
    case Cause::Interrupted: return "The statement was interrupted.";
    case Cause::TransactionEnded: return "The transaction was ended by an earlier failure.";
    case Cause::TablesChanged: return "The tables were changed while the statement ran.";
    case Cause::NoConnectionLeft: return "The server has no connection left to give.";
    case Cause::ReadOnly: return "The register is read-only.";
    case Cause::Full: return "The disk is full.";
    case Cause::DiskError: return "The disk reported an error.";
    case Cause::Damaged: return "The file is damaged.";
    case Cause::NoMemory: return "There is not enough memory.";
    case Cause::NotARegister: return "The file is not a register.";
    case Cause::CannotOpen: return "The file could not be opened.";
    case Cause::Denied: return "Permission to the file was denied.";
    case Cause::LockProtocol: return "The file lock protocol failed.";
    case Cause::DuplicateKey:
      return "The changes were not successful because they would create a duplicate key.";
    case Cause::NullValue: return "The field cannot contain a Null value.";
    case Cause::TooLong:
      return "The field is too small to accept the amount of data you attempted to add. Try "
             "inserting or pasting less data.";
    case Cause::BreaksRule: return "The change breaks a rule of the table.";
    case Cause::TooLarge: return "The value or statement is too large.";
    case Cause::Refused: return "The database engine refused the statement.";
    case Cause::None:
    case Cause::NoSuchPlace:
    case Cause::SomethingThere:
    case Cause::ChangedMeanwhile: break;
  }
  return {};
}

}  // namespace kv
