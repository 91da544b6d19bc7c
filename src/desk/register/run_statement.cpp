// SPDX-License-Identifier: Apache-2.0
#include "desk/register/run_statement.h"

#include "recordset/database.h"

namespace kv::desk {

void requireMayRunStatements(const Session& session) {
  session.requireAdministrator("only administrators may run SQL");
}

StatementResult runStatement(const Session& session, const std::string& text) {
  requireMayRunStatements(session);
  const auto connection = session->DataServer()->Connection();
  StatementResult result;
  if (connection->database()->prepare(text).isSelect())
    result.rows = connection->OpenRecordset(text, kKeyset, kReadOnly);
  else
    connection->Execute(text, result.affected);
  return result;
}

}  // namespace kv::desk
