// SPDX-License-Identifier: Apache-2.0
// Passwords and their hashes are in no error, no log, no trace and no output: everything that goes
// out while they are used is gathered and searched.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <set>

#include "cli/program.h"
#include "support/session_test.h"

namespace kv {
namespace {

using test::Texts;
using testing::Contains;
using testing::IsEmpty;

// Every one different, long enough not to turn up by chance, and all with this in it.
constexpr const char* kMark = "Geheim";

// Where something can be read afterwards, and what can be read there.
using Channels = std::map<std::string, std::string>;

// Which texts are found in which channels.
Texts found(const Channels& channels, const std::set<std::string>& texts) {
  Texts out;
  for (const auto& [channel, said] : channels)
    for (const auto& text : texts)
      if (said.find(text) != std::string::npos) out.push_back(text + " in " + channel);
  return out;
}

// Keeps the channels of a session, and of the programs run on its register.
template <class Session>
class Secrecy : public Session {
 protected:
  // The library's channels, from the connection's opening on.
  void listen() {
    const auto connection = this->vesk_->DataServer()->Connection();
    connection->Observe(
        [this](std::string_view text) { channels_["observer"].append(text) += '\n'; });
    log_ = this->reg_.folder().file("log");
    connection->StatementLog(log_);
  }

  // Runs something that may fail; returns the number of what it raised, 0 for nothing.
  std::int32_t attempt(const std::function<void()>& operation) {
    const auto error = test::errorOf(operation);
    if (!error) return 0;
    channels_["errors"] +=
        error->source() + ": " + error->description() + " " + error->what() + '\n';
    return error->number();
  }

  // Runs the program with a trace; returns how it ended.
  int program(Texts words, const std::string& password, const std::string& newPassword = "-") {
    const std::string trace = this->reg_.folder().file("trace");
    if (words.front() != "new") words.insert(words.end(), {"--trace", trace});
    const auto outcome = test::run(
        {.arguments = std::move(words),
         .environment = {{"KVVESK_PASSWORD", password}, {"KVVESK_NEW_PASSWORD", newPassword}}});
    channels_["output"] += outcome.out;
    channels_["error output"] += outcome.err;
    return outcome.code;
  }

  [[nodiscard]] Channels channels() const {
    Channels all = channels_;
    all["log"] = test::contents(log_);
    const std::string trace = this->reg_.folder().file("trace");
    if (std::filesystem::exists(trace)) all["trace"] = test::contents(trace);
    if (test::onServer()) all["server"] = test::contents(serverLog()).substr(serverBefore_);
    return all;
  }

  // Hashes as the table has them now; a whole one, and the part that is the hash itself.
  void keepHashes() {
    for (const auto& hash : this->reg_.rows("Select [Password] From Users")) {
      if (!Passwords::isHash(hash)) continue;
      hashes_.insert(hash);
      hashes_.insert(hash.substr(hash.rfind('$') + 1));
    }
  }
  [[nodiscard]] std::set<std::string> secrets() const {
    std::set<std::string> all = hashes_;
    all.insert(kMark);
    all.insert("$argon2id$");
    return all;
  }

  [[nodiscard]] clsVeskUser& user() { return *this->vesk_->User(); }

 private:
  // The server says there what it could not do, and for whom.
  static std::string serverLog() {
    const std::string location = std::getenv("KVVESK_TEST_SERVER");
    return location.substr(location.find("host=") + 5) + "/server.log";
  }

  Channels channels_;
  std::string log_;
  // What the server had logged before; other tests have said things there.
  std::size_t serverBefore_ = test::onServer() ? test::contents(serverLog()).size() : 0;
  std::set<std::string> hashes_;
};

class PasswordSecrecy : public Secrecy<test::SessionTest> {
 protected:
  PasswordSecrecy() {
    (void)vesk_->OpenConnection(reg_.path());
    listen();
  }

  [[nodiscard]] std::int32_t logIn(const std::string& name, const std::string& password) {
    return attempt([&] { vesk_->Login(name, password); });
  }
  [[nodiscard]] std::int32_t newUser(const Ref<Recordset>& rs, const std::string& name,
                                     const std::string& password, const std::string& title = {}) {
    return attempt([&] { (void)user().NewUser(rs, name, "", password, title, "", ""); });
  }
  [[nodiscard]] std::int32_t saveUser(const Ref<Recordset>& rs, const std::string& password,
                                      const std::string& title = {}) {
    return attempt([&] { (void)user().SaveUser(rs, "User2", "Bert", "", password, title, ""); });
  }
};

constexpr std::int32_t kWrongPassword = kErrorBase + 2506;

TEST_F(PasswordSecrecy, TheLibraryTellsNothing) {
  // Log-in, right and wrong, by hash and by clear text.
  EXPECT_EQ(logIn("Bert", "Geheim-wrong"), kWrongPassword);
  EXPECT_EQ(logIn("Nobody", "Geheim-nobodys"), kWrongPassword);
  EXPECT_EQ(logIn("Bert", "Geheim-\xE9"), kWrongPassword);
  ASSERT_TRUE(vesk_->MainUser()->setPassword("User1", "Geheim-annas"));
  keepHashes();
  EXPECT_EQ(logIn("Anna", "Geheim-annas"), 0);

  EXPECT_EQ(newUser(user().Records(-1), "Dora", "Geheim-doras"), 0);
  EXPECT_EQ(logIn("Dora", "Geheim-guess"), kWrongPassword);
  EXPECT_EQ(logIn("Dora", "Geheim-doras"), 0);
  keepHashes();

  std::string name, alias, password, title, email, group;
  const auto load = [&] {
    ASSERT_TRUE(user().LoadUser(user().Record("User2"), "User2", name, alias, password, title,
                                email, group));
  };
  EXPECT_EQ(saveUser(user().Record("User2"), "Geheim-berts 'key' \\ \xC3\xBC"), 0);
  load();
  EXPECT_EQ(password, "Geheim-berts 'key' \\ \xC3\xBC");
  EXPECT_EQ(logIn("Bert", password), 0);
  load();
  EXPECT_TRUE(Passwords::isHash(password));
  keepHashes();
  EXPECT_EQ(saveUser(user().Record("User2"), password), 0) << "a hash";

  // What cannot be stored.
  const std::string tooLong = "Geheim-" + std::string(300, 'x');
  for (const std::string& bad :
       {tooLong, std::string("Geheim-\xE9"), std::string("Geheim-\0x", 9)}) {
    EXPECT_EQ(newUser(user().Records(-1), "Emil", bad), kWrongType);
    EXPECT_EQ(saveUser(user().Record("User2"), bad), kWrongType);
  }
  // What goes wrong beside it.
  EXPECT_EQ(newUser(user().Records(-1), "Emil", "Geheim-a", tooLong.substr(7)), kWrongType);
  EXPECT_EQ(saveUser(user().Records(-1, "", "", "UserID, Password, UserName"), "Geheim-b"),
            kNoSuchItem);
  const auto readOnly =
      vesk_->DataServer()->Connection()->OpenRecordset("Select * From Users", kKeyset, kReadOnly);
  EXPECT_NE(newUser(readOnly, "Emil", "Geheim-c"), 0);
  EXPECT_NE(saveUser(readOnly, "Geheim-d"), 0);
  const auto changed = user().Record("User2");
  (void)changed->Fields("Title")->Value();
  reg_.execute("Update Users Set Title = 'Clerk' Where UserID = 'User2'");
  EXPECT_EQ(saveUser(changed, "Geheim-e"), kRowChanged);

  const test::RawRegister raw(reg_.path());
  for (const char* action : {"INSERT", "UPDATE"}) {
    raw.refuse(action, "Users");
    if (action == std::string("INSERT"))
      EXPECT_EQ(newUser(user().Records(-1), "Emil", "Geheim-f"), kEngineFailure);
    else
      EXPECT_EQ(saveUser(user().Record("User2"), "Geheim-g"), kEngineFailure);
    EXPECT_EQ(attempt([&] { (void)vesk_->MainUser()->setPassword("User2", "Geheim-h"); }),
              action == std::string("UPDATE") ? kEngineFailure : 0);
    raw.allowAgain("Users");
    keepHashes();
  }
  // A clear text whose hash cannot be written.
  EXPECT_EQ(saveUser(user().Record("User2"), "Geheim-i"), 0);
  raw.refuse("UPDATE", "Users");
  EXPECT_EQ(logIn("Bert", "Geheim-i"), kEngineFailure);
  raw.allowAgain("Users");

  vesk_->DataServer()->Close();
  EXPECT_NE(attempt([&] { vesk_->MainUser()->Login("Anna", "Geheim-annas"); }), 0);

  const auto all = channels();
  EXPECT_THAT(all, Contains(testing::Key("errors")));
  EXPECT_NE(all.at("observer"), "");
  EXPECT_NE(all.at("log"), "");
  EXPECT_THAT(found(all, secrets()), IsEmpty());
}

TEST_F(PasswordSecrecy, TheProgramTellsNothing) {
  const std::string clear = "Update Users Set [Password] = 'Geheim-annas' Where UserID = 'User1'";
  reg_.execute(clear);
  const std::string& at = reg_.path();
  const std::string annas = "Geheim-annas";
  EXPECT_EQ(program({"config", at, "-u", "Anna"}, "Geheim-wrong"), 1);
  EXPECT_EQ(program({"config", at, "-u", "Anna"}, annas), 0) << "in clear text";
  keepHashes();
  EXPECT_EQ(program({"config", at, "-u", "Anna"}, annas), 0) << "by its hash";
  EXPECT_EQ(program({"passwd", at, "Bert", "-u", "Anna"}, annas, "Geheim-berts"), 0);
  keepHashes();
  EXPECT_EQ(program({"passwd", at, "Bert", "-u", "Anna"}, "Geheim-guess", "Geheim-new"), 1);
  EXPECT_EQ(program({"passwd", at, "Nobody", "-u", "Anna"}, annas, "Geheim-new"), 1);
  EXPECT_EQ(program({"passwd", at, "Anna", "-u", "Bert"}, "Geheim-berts", "Geheim-new"), 1);
  EXPECT_EQ(program({"user", "passwd", at, "Bert", "-u", "Anna", "--json"}, annas, "Geheim-two"),
            0);
  EXPECT_EQ(program({"user", "add", at, "--name", "Emil", "-u", "Anna"}, annas, "Geheim-emils"), 0);
  EXPECT_EQ(program({"user", "add", at, "--name", "Emil", "-u", "Anna"}, annas, "Geheim-too"), 1);
  EXPECT_EQ(program({"user", "edit", at, "Emil", "--alias", "e", "-u", "Anna"}, annas), 0);
  keepHashes();
  for (const char* format : {"--csv", "--json"}) {
    EXPECT_EQ(program({"users", at, "--fields", "*", format, "-u", "Anna"}, annas), 0);
    EXPECT_EQ(program({"user", "show", at, "Emil", format, "-u", "Anna"}, annas), 0);
    EXPECT_EQ(program({"config", at, format, "-u", "Anna"}, annas), 0);
  }
  EXPECT_EQ(program({"users", at, "--fields", "Password", "-u", "Anna"}, annas), 1);

  const test::RawRegister raw(at);
  raw.refuse("UPDATE", "Users");
  EXPECT_EQ(program({"passwd", at, "Bert", "-u", "Anna"}, annas, "Geheim-full"), 1);
  EXPECT_EQ(program({"user", "add", at, "--name", "F", "-u", "Anna"}, annas, "Geheim-full"), 1);
  raw.allowAgain("Users");
  reg_.execute(clear);
  raw.refuse("UPDATE", "Users");
  EXPECT_EQ(program({"config", at, "-u", "Anna"}, annas), 1) << "its hash cannot be written";
  raw.allowAgain("Users");

  // A password where none belongs is not repeated.
  EXPECT_EQ(program({"passwd", at, "Bert", "Geheim-word", "-u", "Anna"}, annas), 2);
  EXPECT_EQ(program({"passwd", at, "Bert", "--password", "Geheim-a", "-u", "Anna"}, annas), 2);
  EXPECT_EQ(program({"user", "add", at, "--name", "X", "--password=Geheim-b", "-u", "Anna"}, annas),
            2);
  const std::string made = reg_.folder().file("made.kvv");
  EXPECT_EQ(program({"new", made, "-u", "Gero"}, "Geheim-geros"), 0);
  EXPECT_EQ(program({"new", made, "-u", "Gero"}, "Geheim-geros"), 1);
  EXPECT_EQ(program({"new", reg_.folder().file("bad.kvv"), "-u", "caf\xE9"}, "Geheim-x"), 1);
  EXPECT_EQ(program({"passwd", at, "Gero", "-u", "Gero"}, "Geheim-geros", "Geheim-y"), 1);

  const auto all = channels();
  EXPECT_NE(all.at("output"), "");
  EXPECT_NE(all.at("error output"), "");
  EXPECT_NE(all.at("trace"), "") << "the verbs' own statements are there";
  EXPECT_THAT(found(all, secrets()), IsEmpty());
}

TEST_F(PasswordSecrecy, TheRolesPasswordInALocationIsNotTold) {
  SERVERS_ONLY();
  const std::string at = reg_.path() + "&password=Geheim-role";
  EXPECT_EQ(program({"config", at, "-u", "Anna"}, "wrong"), 1);
  EXPECT_EQ(program({"config", at, "-u", "Anna"}, "secret"), 0);
  EXPECT_EQ(program({"new", at, "-u", "Anna"}, "secret"), 1) << "there is one";
  EXPECT_EQ(program({"config", at + "&host=/nowhere", "-u", "Anna"}, "secret"), 1);
  EXPECT_THAT(found(channels(), {kMark}), IsEmpty());
}

// The search is worth something only if it finds what is there.
TEST_F(PasswordSecrecy, WhatIsToldIsFound) {
  ASSERT_EQ(logIn("Anna", "secret"), 0);
  EXPECT_THAT(found(channels(), {kMark, "$argon2id$"}), IsEmpty());
  EXPECT_EQ(attempt([&] { (void)vesk_->GetRecordset("Select * From Geheim"); }), kUnknownTable);
  EXPECT_EQ(program({"sql", reg_.path(), "Select * From Geheim", "-u", "Anna"}, "secret"), 1);
  EXPECT_EQ(program({"sql", reg_.path(), "Select [Password] From Users Where UserName <> 'Geheim'",
                     "--csv", "-u", "Anna"},
                    "secret"),
            0);
  Texts expected = {"Geheim in error output", "Geheim in errors", "Geheim in log",
                    "Geheim in observer"};
  if (test::onServer()) {
    test::TestServer::run(reg_.path(), "DO $$ BEGIN RAISE LOG 'Geheim'; END $$");
    expected.emplace_back("Geheim in server");
  }
  expected.emplace_back("Geheim in trace");
  EXPECT_EQ(found(channels(), {kMark}), expected);
  keepHashes();
  const auto hashes = found(channels(), secrets());
  EXPECT_THAT(hashes, Contains("$argon2id$ in output"));
  const std::string annas = reg_.value("Select [Password] From Users Where UserID = 'User1'");
  EXPECT_THAT(hashes, Contains(annas + " in output"));
  EXPECT_THAT(hashes, Contains(annas.substr(annas.rfind('$') + 1) + " in output"));
}

class PasswordFaults : public Secrecy<test::FaultySessionTest> {};

TEST_F(PasswordFaults, WhateverFailsTellsNothing) {
  listen();
  const auto doEverything = [&] {
    (void)attempt(
        [&] { (void)user().NewUser(user().Records(-1), "Dora", "", "Geheim-doras", "", "", ""); });
    (void)attempt([&] {
      (void)user().SaveUser(user().Record("User2"), "User2", "Bert", "", "Geheim-berts", "", "");
    });
    (void)attempt([&] { vesk_->MainUser()->Login("Bert", "Geheim-berts"); });
    (void)attempt([&] { (void)vesk_->MainUser()->setPassword("User2", "Geheim-new"); });
    keepHashes();
  };
  const int writes = writesOf(doEverything);
  ASSERT_GE(writes, 4);
  for (int failing = 0; failing < writes; ++failing) {
    faults_->failWriteAfter = failing;
    doEverything();
    faults_->failWriteAfter = -1;
    faults_->failCommitAfter = failing;
    doEverything();
    faults_->failCommitAfter = -1;
  }
  EXPECT_THAT(channels().at("errors"), testing::HasSubstr("The disk is full. (test)"));
  EXPECT_THAT(found(channels(), secrets()), IsEmpty());
}

}  // namespace
}  // namespace kv
