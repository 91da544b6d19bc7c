// SPDX-License-Identifier: Apache-2.0
#include "classes/session/vesk.h"

#include <gtest/gtest.h>

#include <functional>

#include "classes/rights/rights.h"
#include "kvvesk/version.h"
#include "support/error_check.h"
#include "support/test_register.h"

namespace kv {
namespace {

class Vesk : public testing::Test {
 protected:
  Vesk() {
    reg_.addUser(1, "Anna", "secret", true);
    reg_.addUser(2, "Bert", "secret");
  }
  void setVersion(const std::string& literal) {
    reg_.execute("Update VeskConfig Set DatabaseVersion = " + literal);
  }
  test::TestRegister reg_;
};

TEST_F(Vesk, IsBornWithItsChildrenWhichKnowIt) {
  const test::TestSession vesk;
  ASSERT_TRUE(vesk->DataServer());
  ASSERT_TRUE(vesk->MainUser());
  EXPECT_EQ(vesk->Document()->oVesk().get(), &*vesk);
  EXPECT_EQ(vesk->Manual()->oVesk().get(), &*vesk);
  EXPECT_EQ(vesk->User()->oVesk().get(), &*vesk);
  EXPECT_EQ(vesk->Revision()->oVesk().get(), &*vesk);
  EXPECT_NE(vesk->Document()->DataServer(), vesk->DataServer())
      << "each has a data server of its own";
}

TEST_F(Vesk, TellsItsVersion) {
  const test::TestSession vesk;
  const std::string shortForm = vesk->Version(false);
  const std::string longForm = vesk->Version(true);
  EXPECT_EQ(std::count(shortForm.begin(), shortForm.end(), '.'), 1);
  EXPECT_EQ(std::count(longForm.begin(), longForm.end(), '.'), 2);
  EXPECT_EQ(longForm, shortForm + "." + std::to_string(kVersionRevision));
  EXPECT_EQ(shortForm, std::to_string(kVersionMajor) + "." + std::to_string(kVersionMinor));
}

TEST_F(Vesk, OpeningReturnsFalseAlsoWhenItSucceeds) {
  const test::TestSession vesk;
  EXPECT_FALSE(vesk->OpenConnection(reg_.path()));
  EXPECT_TRUE(vesk->DataServer()->Connection());
}

TEST_F(Vesk, OpeningSharesOneConnectionAndProfile) {
  const test::TestSession vesk;
  vesk->OpenConnection(
      "Provider=Microsoft.Jet.OLEDB.3.51;Persist Security Info=False;Data Source=" + reg_.path());
  const auto profile = vesk->DataServer()->Profile();
  for (const auto& server : {vesk->Document()->DataServer(), vesk->Manual()->DataServer(),
                             vesk->Revision()->DataServer(), vesk->MainUser()->DataServer()}) {
    EXPECT_EQ(server->Profile(), profile);
    EXPECT_EQ(server->Connection(), vesk->DataServer()->Connection());
  }
}

TEST_F(Vesk, EachDataServerHasItsOwnTables) {
  const test::TestSession vesk;
  vesk->OpenConnection(reg_.path());
  EXPECT_NO_THROW((void)vesk->DataServer()->Config()->Value("DBID"));
  EXPECT_NO_THROW((void)vesk->Document()->DataServer()->Config()->Value("DocUser1"));
  EXPECT_NO_THROW((void)vesk->Manual()->DataServer()->Config()->Value("ManUserMemo"));
  EXPECT_NO_THROW((void)vesk->Revision()->DataServer()->Config()->Value("RevUser1"));
  EXPECT_RAISES(3265, (void)vesk->Document()->DataServer()->Config()->Value("DBID"));
  EXPECT_RAISES(91, (void)vesk->DataServer()->Queries());
  EXPECT_RAISES(91, (void)vesk->Revision()->DataServer()->Queries());
  EXPECT_EQ(vesk->Document()->DataServer()->Queries()->Add("q"), 1);
  EXPECT_EQ(vesk->Manual()->DataServer()->Queries()->Add("q"), 1);
  EXPECT_EQ(vesk->MainUser()->DataServer()->Queries()->Add("q"), 1);
}

TEST_F(Vesk, ChildrensOpeningAndLogInReturnNothing) {
  const test::TestSession vesk;
  vesk->OpenConnection(reg_.path());
  const auto profile = vesk->DataServer()->Profile();
  EXPECT_TRUE(vesk->Document()->OpenConnection("", profile).isEmpty());
  EXPECT_TRUE(vesk->Manual()->OpenConnection("", profile).isEmpty());
  EXPECT_TRUE(vesk->Revision()->OpenConnection("", profile).isEmpty());
  EXPECT_TRUE(vesk->Document()->Login().isEmpty());
  EXPECT_TRUE(vesk->Manual()->Login().isEmpty());
  EXPECT_TRUE(vesk->Revision()->Login().isEmpty());
}

struct VersionCase {
  const char* literal;
  std::int32_t number;
  const char* description;
};

TEST_F(Vesk, ChecksTheLayoutVersion) {
  const char* old = "The Vesk Database needs to be converted to version: 02.01";
  const char* young = "Vesk needs to be updated to use this database.02.01";
  const VersionCase cases[] = {{"'02.00'", kErrorBase + 2501, old},
                               {"'01.99'", kErrorBase + 2501, old},
                               {"Null", kErrorBase + 2501, old},
                               {"''", kErrorBase + 2501, old},
                               {"'02.01'", 0, ""},
                               {"'02.55'", 0, ""},
                               {"'03.00'", kErrorBase + 2502, young},
                               {"'10.00'", kErrorBase + 2502, young}};
  for (const auto& c : cases) {
    setVersion(c.literal);
    const test::TestSession vesk;
    const auto error = test::errorOf([&] { vesk->OpenConnection(reg_.path()); });
    EXPECT_EQ(error ? error->number() : 0, c.number) << c.literal;
    EXPECT_EQ(error ? error->description() : "", c.description) << c.literal;
    if (error) {
      EXPECT_EQ(error->source(), "OpenConnection");
      EXPECT_FALSE(vesk->DataServer());
      EXPECT_TRUE(vesk->User());
    }
  }
}

TEST_F(Vesk, ARegisterWithoutAConfigurationRowIsTooOld) {
  reg_.execute("Delete * From VeskConfig");
  const test::TestSession vesk;
  EXPECT_RAISES(kErrorBase + 2501, vesk->OpenConnection(reg_.path()));
}

TEST_F(Vesk, AnOldLayoutClosesTheConnectionAndANewOneDoesNot) {
  for (const bool old : {true, false}) {
    setVersion(old ? "'02.00'" : "'03.00'");
    const test::TestSession vesk;
    const auto server = vesk->DataServer();
    EXPECT_THROW(vesk->OpenConnection(reg_.path()), Error);
    EXPECT_EQ(server->Connection() != nullptr, !old);
  }
}

TEST_F(Vesk, ChecksTheVersionOfUsersAndActions) {
  for (const char* version : {"'1.003.005'", "Null"}) {
    reg_.execute(std::string("Update VeskConfig Set Version = ") + version);
    const test::TestSession vesk;
    const auto error = test::errorOf([&] { vesk->OpenConnection(reg_.path()); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->number(), kErrorBase + 2503);
    EXPECT_EQ(error->source(), "OpenConnection");
    EXPECT_EQ(error->description(), "The user/action datasource needs to be converted.");
    EXPECT_FALSE(vesk->DataServer());
    EXPECT_FALSE(vesk->User());
    EXPECT_TRUE(vesk->Document());
  }
}

TEST_F(Vesk, NumbersAreThoseOfComponentErrors) {
  EXPECT_EQ(static_cast<std::uint32_t>(kErrorBase + 2501), 0x800409C5U);
}

TEST_F(Vesk, PassesOnWhatTheDatabaseSays) {
  const test::TestSession vesk;
  EXPECT_RAISES(kEngineFailure, vesk->OpenConnection(reg_.folder().file("missing.kvv")));
  EXPECT_RAISES(3709, vesk->OpenConnection());
  EXPECT_TRUE(vesk->DataServer());
  EXPECT_NO_THROW(vesk->OpenConnection(reg_.path())) << "and can be tried again";
}

TEST_F(Vesk, LogsInAndOpensTheConnectionWhenNoneIsOpen) {
  const test::TestSession vesk;
  EXPECT_TRUE(vesk->Login("Anna", "secret", reg_.path()).isEmpty());
  EXPECT_EQ(vesk->DataServer()->Profile()->UserID(), "User1");
  EXPECT_EQ(vesk->MainUser()->ApplicationCode(), "D2");
  for (const auto& server : {vesk->Document()->DataServer(), vesk->Manual()->DataServer(),
                             vesk->Revision()->DataServer()})
    EXPECT_EQ(server->Profile()->UserID(), "User1");
  vesk->Login("Bert", "secret");
  EXPECT_EQ(vesk->Document()->DataServer()->Profile()->UserID(), "User2");
}

TEST_F(Vesk, LogsInOnTheConnectionOfAProfile) {
  kvDataServer server;
  server.OpenConnection(reg_.path());
  const test::TestSession vesk;
  vesk->Login("Anna", "secret", "", server.Profile());
  EXPECT_EQ(server.Profile()->UserID(), "User1");
}

TEST_F(Vesk, ALogInReachesChildrenThatHadAnotherProfile) {
  const test::TestSession vesk;
  vesk->OpenConnection(reg_.path());
  const Ref<kvDataServer> servers[] = {vesk->Document()->DataServer(), vesk->Manual()->DataServer(),
                                       vesk->Revision()->DataServer()};
  for (const auto& server : servers) server->Profile(makeRef<kvProfile>());
  vesk->Login("Anna", "secret");
  for (const auto& server : servers) {
    EXPECT_EQ(server->Profile(), vesk->DataServer()->Profile());
    EXPECT_EQ(server->Profile()->UserID(), "User1");
  }
  EXPECT_TRUE(vesk->Manual()->Add("name", "", "", "", "", "").starts_with("User1"))
      << "what a child adds is the user's";
}

TEST_F(Vesk, AnotherRegisterNeedsALogInOfItsOwn) {
  const test::TestRegister other;
  other.addUser(1, "Dora", "secret", true);
  const auto open = [&](clsVesk& vesk) { vesk.OpenConnection(other.path()); };
  const auto openChild = [&](clsVesk& vesk) { vesk.Document()->OpenConnection(other.path()); };
  for (const auto& way : std::initializer_list<std::function<void(clsVesk&)>>{open, openChild}) {
    const test::TestSession vesk;
    vesk->Login("Anna", "secret", reg_.path());
    EXPECT_RAISES(kEngineFailure, vesk->OpenConnection(reg_.folder().file("missing.kvv")));
    EXPECT_TRUE(vesk->UserAccess(urDeleteUser)) << "nothing else was opened";
    way(*vesk);
    for (const auto& server : {vesk->DataServer(), vesk->Document()->DataServer(),
                               vesk->Manual()->DataServer(), vesk->MainUser()->DataServer()}) {
      EXPECT_EQ(server->Profile()->UserID(), "");
      EXPECT_EQ(server->Profile()->Administrator(), 0);
      EXPECT_EQ(server->Profile()->OwnerOverride(), 0);
    }
    for (std::int16_t right = 1; right <= static_cast<std::int16_t>(kRightsLength); ++right)
      ASSERT_FALSE(vesk->UserAccess(right)) << right;
    EXPECT_FALSE(vesk->OwnerAccess(orEditDocumentTitle));
    EXPECT_RAISES(kErrorBase + 2529, vesk->DocumentManualRelation("M1", "D1"));
    EXPECT_FALSE(vesk->Revision()->CanApprove("User1", 1, "User1"));
    EXPECT_RAISES(kErrorBase + 2506, vesk->Login("Anna", "secret"));
    vesk->Login("Dora", "secret");
    EXPECT_TRUE(vesk->UserAccess(urDeleteUser));
  }
}

TEST_F(Vesk, LogInFailures) {
  const test::TestSession vesk;
  const auto unconnected = test::errorOf([&] { vesk->Login("Anna", "secret"); });
  ASSERT_TRUE(unconnected);
  EXPECT_EQ(unconnected->number(), kErrorBase + 2505);
  EXPECT_EQ(unconnected->source(), "Login");
  EXPECT_EQ(unconnected->description(), "Vesk is unconnected to datasource");
  EXPECT_RAISES(kErrorBase + 2505, vesk->Login("Anna", "secret", "   "));
  for (const auto& pair : {std::pair{"Anna", "wrong"}, {"Nobody", "secret"}, {"Anna", ""}}) {
    const auto wrong = test::errorOf([&] { vesk->Login(pair.first, pair.second, reg_.path()); });
    ASSERT_TRUE(wrong);
    EXPECT_EQ(wrong->number(), kErrorBase + 2506);
    EXPECT_EQ(wrong->source(), "Login");
    EXPECT_EQ(wrong->description(), "UserName or Password is incorrect");
    EXPECT_TRUE(vesk->DataServer()->Connection()) << "the connection stays open";
    EXPECT_EQ(vesk->DataServer()->Profile()->UserID(), "");
  }
}

TEST_F(Vesk, AUserWithoutAProfileRowGets255Zeros) {
  reg_.execute("Delete * From VeskProfiles Where UserID = 'User2'");
  const test::TestSession vesk;
  vesk->Login("Bert", "secret", reg_.path());
  EXPECT_EQ(vesk->DataServer()->Profile()->Rights(), std::string(255, '0'));
  EXPECT_EQ(vesk->MainUser()->Profile()->Rights(), std::string(255, '0'));
}

TEST_F(Vesk, RunsSqlExactlyAsGiven) {
  const test::TestSession vesk;
  vesk->OpenConnection(reg_.path());
  std::vector<std::string> seen;
  vesk->DataServer()->Connection()->Observe(
      [&](std::string_view text) { seen.emplace_back(text); });
  const auto rs = vesk->GetRecordset("Select * From Users Order By UserName");
  EXPECT_EQ(rs->RecordCount(), 2);
  EXPECT_EQ(rs->CursorType(), kKeyset);
  EXPECT_EQ(rs->LockType(), kOptimistic);
  EXPECT_EQ(vesk->Execute("Update Users Set Alias = 'x'"), 2);
  EXPECT_EQ(vesk->Execute("Update Users Set Alias = 'y' Where ID = 1", 8), 1)
      << "Options has no effect";
  EXPECT_EQ(vesk->Execute("Update Users Set Alias = 'y' Where ID = 1", 1), 1);
  EXPECT_EQ(seen, (std::vector<std::string>{"Select * From Users Order By UserName",
                                            "Update Users Set Alias = 'x'",
                                            "Update Users Set Alias = 'y' Where ID = 1",
                                            "Update Users Set Alias = 'y' Where ID = 1"}));
  EXPECT_RAISES(kSyntax, (void)vesk->GetRecordset("nonsense"));
  EXPECT_RAISES(kUnknownTable, vesk->Execute("Delete * From Nope"));
}

TEST_F(Vesk, WithoutAConnectionSqlFindsNoObject) {
  const test::TestSession vesk;
  EXPECT_RAISES(91, (void)vesk->GetRecordset("Select * From Users"));
  EXPECT_RAISES(91, vesk->Execute("Delete * From Users"));
}

TEST_F(Vesk, ClosingTheSessionLetsGoOfEverything) {
  const auto vesk = clsVesk::create(test::kCheapPasswords);
  vesk->Login("Anna", "secret", reg_.path());
  const auto rs = vesk->GetRecordset("Select * From Users");
  EXPECT_EQ(test::shown(rs->Fields("UserName")->Value()), "Anna");
  const std::weak_ptr<clsVeskDocument> document = vesk->Document().shared();
  vesk->CloseSession();
  EXPECT_FALSE(vesk->DataServer());
  EXPECT_FALSE(vesk->Document());
  EXPECT_FALSE(vesk->Manual());
  EXPECT_FALSE(vesk->MainUser());
  EXPECT_FALSE(vesk->User());
  EXPECT_FALSE(vesk->Revision());
  EXPECT_TRUE(document.expired());
  EXPECT_RAISES(91, vesk->CloseSession());
  EXPECT_RAISES(91, (void)vesk->GetRecordset("Select * From Users"));
  EXPECT_RAISES(91, vesk->OpenConnection(reg_.path()));
  EXPECT_RAISES(3709, rs->Requery());
  EXPECT_RAISES(3709, (void)rs->Fields("UserName")->Value()) << "though it was read before";
  rs->Close();
}

TEST_F(Vesk, AClosedSessionDoesNotReopen) {
  const auto vesk = clsVesk::create(test::kCheapPasswords);
  vesk->Login("Anna", "secret", reg_.path());
  vesk->CloseSession();
  EXPECT_RAISES(91, vesk->Login("Anna", "secret", reg_.path()));
  EXPECT_TRUE(vesk->DataServer()) << "only the data server is made again";
  EXPECT_FALSE(vesk->Document());
  vesk->CloseSession();
}

TEST_F(Vesk, AfterAFailedVersionCheckTheSessionCanStillBeLetGo) {
  setVersion("'03.00'");
  const auto vesk = clsVesk::create(test::kCheapPasswords);
  EXPECT_THROW(vesk->OpenConnection(reg_.path()), Error);
  const std::weak_ptr<clsVeskManual> manual = vesk->Manual().shared();
  EXPECT_RAISES(91, vesk->CloseSession());
  EXPECT_TRUE(manual.expired());
}

}  // namespace
}  // namespace kv
