// SPDX-License-Identifier: Apache-2.0
#include "support/test_register.h"

#include "common/convert.h"
#include "common/text.h"
#include "schema/create_register.h"
#include "support/test_server.h"

namespace kv {
void PrintTo(const Variant& value, std::ostream* out) {
  *out << "kind " << static_cast<int>(value.kind()) << " '" << test::shown(value) << "'";
}
}  // namespace kv

namespace kv::test {

namespace {

// Made once per process and copied for every test.
const std::string& templateFile() {
  static const TempFolder folder;
  static const std::string path = [] {
    const std::string file = folder.file("template.kvv");
    createRegister(file)->Close();
    return file;
  }();
  return path;
}

}  // namespace

TestRegister::TestRegister() : path_(folder_.file("register.kvv")) {
  if (TestServer::isGiven())
    path_ = TestServer::newRegister();
  else
    std::filesystem::copy_file(templateFile(), path_);
  connection_ = kvConnection::open(path_);
}

TestRegister::~TestRegister() {
  connection_->Close();
  if (TestServer::isGiven()) TestServer::release(path_);
}

Ref<kvConnection> TestRegister::openAnother(const std::string& settings) const {
  return kvConnection::open(settings + "Data Source=" + path_);
}

std::int32_t TestRegister::execute(const std::string& sql) const {
  std::int32_t affected = 0;
  connection_->Execute(sql, affected);
  return affected;
}

Ref<Recordset> TestRegister::open(const std::string& sql, std::int32_t lockType) const {
  return connection_->OpenRecordset(sql, kKeyset, lockType);
}

std::vector<std::string> TestRegister::rows(const std::string& sql) const {
  return rowsOf(*open(sql));
}

std::string TestRegister::value(const std::string& sql) const {
  const auto all = rows(sql);
  return all.size() == 1 ? all[0] : "(" + std::to_string(all.size()) + " rows)";
}

void TestRegister::addUser(int number, const std::string& name, const std::string& password,
                           bool administrator, const std::string& rights) const {
  const std::string id = "User" + std::to_string(number);
  const std::string hash =
      password.empty() ? "Null" : "'" + Passwords(kCheapPasswords).hash(password) + "'";
  execute("Insert Into Users (ID, UserID, UserName, [Password]) Values (" + std::to_string(number) +
          ", '" + id + "', '" + doubledQuotes(name) + "', " + hash + ")");
  execute("Insert Into VeskProfiles (UserID, UserName, Administrator, Rights) Values ('" + id +
          "', '" + doubledQuotes(name) + "', " + (administrator ? "True" : "False") + ", " +
          (rights.empty() ? "Null" : "'" + rights + "'") + ")");
}

std::string shown(const Variant& value) { return value.isNull() ? "~" : joinText(value); }

std::string rowOf(Recordset& rs) {
  std::string out;
  for (std::int32_t i = 0; i < rs.Fields().Count(); ++i)
    out += (i > 0 ? "|" : "") + shown(rs.Fields(i)->Value());
  return out;
}

std::vector<std::string> rowsOf(Recordset& rs) {
  std::vector<std::string> out;
  if (rs.RecordCount() > 0) rs.MoveFirst();
  for (; !rs.Eof(); rs.MoveNext()) out.push_back(rowOf(rs));
  return out;
}

TestSession::~TestSession() {
  try {
    vesk_->CloseSession();
  } catch (const Error&) {  // closed by the test already
  }
}

}  // namespace kv::test
