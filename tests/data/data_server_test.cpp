// SPDX-License-Identifier: Apache-2.0
// DataServer, Config, Profile and Queries.

#include "data/data_server.h"

#include <gtest/gtest.h>

#include "support/error_check.h"
#include "support/test_register.h"

namespace kv {
namespace {

class DataServerTest : public testing::Test {
 protected:
  DataServerTest() {
    server_.OpenConnection(reg_.path());
    server_.SetTables("VeskConfig", "VeskGroups", "DocumentQuerys", "VeskKeywords", "VeskReporting",
                      "VeskProfiles", "", "");
  }
  test::TestRegister reg_;
  kvDataServer server_;
};

TEST_F(DataServerTest, HasAProfileFromTheStartAndNoConnection) {
  const kvDataServer fresh;
  ASSERT_TRUE(fresh.Profile());
  EXPECT_EQ(fresh.Profile()->UserID(), "");
  EXPECT_EQ(fresh.Profile()->ConnectionString(), "");
  EXPECT_FALSE(fresh.Connection());
  EXPECT_EQ(fresh.StatementLog(), "");
}

TEST_F(DataServerTest, NeedsSomethingToConnectTo) {
  kvDataServer fresh;
  EXPECT_RAISES(3709, fresh.OpenConnection());
  EXPECT_RAISES(3709, fresh.OpenConnection("  "));
  EXPECT_RAISES(3709, fresh.OpenConnection("", makeRef<kvProfile>()));
  EXPECT_RAISES(kEngineFailure, fresh.OpenConnection(reg_.folder().file("missing.kvv")));
  EXPECT_FALSE(fresh.Connection());
}

TEST_F(DataServerTest, SharesTheConnectionOfAProfile) {
  kvDataServer second;
  second.OpenConnection("", server_.Profile());
  EXPECT_EQ(second.Profile(), server_.Profile());
  EXPECT_EQ(second.Connection(), server_.Connection());
  EXPECT_EQ(server_.Profile()->ConnectionString(), reg_.path());
  server_.Profile()->Close();
  EXPECT_FALSE(server_.Connection());
  EXPECT_FALSE(second.Connection()) << "closed for all";
}

TEST_F(DataServerTest, ClosingKeepsTheProfile) {
  server_.Close();
  EXPECT_FALSE(server_.Connection());
  EXPECT_TRUE(server_.Profile());
  EXPECT_RAISES(91, server_.Profile(nullptr));
}

TEST_F(DataServerTest, AStoreWithoutATableOrConnectionIsNoObject) {
  kvDataServer bare;
  bare.OpenConnection("", server_.Profile());
  EXPECT_RAISES(91, (void)bare.Config());
  EXPECT_RAISES(91, (void)bare.Queries());
  server_.Close();
  EXPECT_RAISES(91, (void)server_.Config());
}

TEST_F(DataServerTest, TheStatementLogIsTheConnections) {
  const std::string path = reg_.folder().file("log");
  server_.StatementLog(path);
  (void)server_.Connection()->OpenRecordset("Select * From Users");
  (void)server_.Config()->Value("DBID");
  server_.Config()->Store("DBID", "x");
  server_.StatementLog("");
  EXPECT_EQ(test::contents(path), "Select * From Users\n")
      << "the components' own reads are not in it";
}

TEST_F(DataServerTest, ConfigurationIsReadByKeyWithoutRegardToCase) {
  EXPECT_EQ(server_.Config()->Value("DatabaseVersion"), Variant("02.01"));
  EXPECT_EQ(server_.Config()->Value("ownerrights"), server_.Config()->Value("OwnerRights"));
  EXPECT_EQ(server_.Config()->Value("ExternalActionSystem"), Variant(false));
  EXPECT_TRUE(server_.Config()->Value("UserDBLocation").isEmpty()) << "a Null value reads as Empty";
  EXPECT_RAISES(3265, (void)server_.Config()->Value("Colour"));
  EXPECT_RAISES(3265, (void)server_.Config()->Value("DBID] From Users; --"));
}

TEST_F(DataServerTest, ConfigurationIsStoredByKey) {
  server_.Config()->Store("programoptions", "1");
  server_.Config()->Store("Originator", "2");
  EXPECT_EQ(server_.Config()->Value("ProgramOptions"), Variant("1"));
  EXPECT_EQ(server_.Config()->Value("Originator"), Variant(2));
  server_.Config()->Store("DBID", Null);
  EXPECT_TRUE(server_.Config()->Value("DBID").isEmpty());
  EXPECT_RAISES(3421, server_.Config()->Store("Originator", "x"));
  EXPECT_RAISES(3421, server_.Config()->Store("DBID", std::string(51, 'x')));
  EXPECT_RAISES(3265, server_.Config()->Store("Colour", "red"));
}

TEST_F(DataServerTest, LabelsHaveOneForm) {
  server_.Config()->Store("Revision", "Issue");
  EXPECT_EQ(server_.Config()->Label("revision", 0), "Issue");
  EXPECT_EQ(server_.Config()->Label("UserDBLocation", 0), "");
  EXPECT_RAISES(3001, (void)server_.Config()->Label("Revision", 1));
}

TEST_F(DataServerTest, ChangesOfOthersAreSeenAtOnce) {
  EXPECT_EQ(server_.Config()->Value("Document"), Variant("Document"));
  reg_.execute("Update VeskConfig Set Document = 'Procedure'");
  EXPECT_EQ(server_.Config()->Value("Document"), Variant("Procedure"));
}

TEST_F(DataServerTest, QueriesAreAddedOpenedAndDeleted) {
  const auto queries = server_.Queries();
  const auto first = queries->Add("<<New Query>>");
  const auto second = queries->Add("<<New Query>>");
  EXPECT_NE(first, second);
  const auto rs = queries->Open(first);
  ASSERT_EQ(rs->RecordCount(), 1);
  EXPECT_EQ(rs->Fields("QueryName")->Value(), Variant("<<New Query>>"));
  EXPECT_TRUE(rs->Fields("DocType")->IsNull());
  EXPECT_EQ(rs->LockType(), kPessimistic);
  rs->Fields("Field1")->Value("x");
  rs->Update();
  queries->Delete(first);
  EXPECT_EQ(queries->Open(first)->RecordCount(), 0);
  EXPECT_EQ(queries->Open(second)->RecordCount(), 1);
  EXPECT_NO_THROW(queries->Delete(first));
}

TEST(Profile, TestsRightsByPosition) {
  kvProfile profile;
  profile.setUser("U1", "Name", "0101", false);
  EXPECT_FALSE(profile.HasRight(1));
  EXPECT_TRUE(profile.HasRight(2));
  EXPECT_TRUE(profile.HasRight(4));
  EXPECT_FALSE(profile.HasRight(5)) << "beyond the text";
  EXPECT_RAISES(5, (void)profile.HasRight(0));
  EXPECT_RAISES(5, (void)profile.HasRight(-1));
  EXPECT_EQ(profile.Administrator(), 0);
  EXPECT_EQ(profile.OwnerOverride(), 0);
  profile.Rights("1");
  EXPECT_TRUE(profile.HasRight(1));
}

TEST(Profile, AdministratorsHoldEveryRight) {
  kvProfile profile;
  profile.setUser("U1", "Name", "", true);
  EXPECT_TRUE(profile.HasRight(1));
  EXPECT_TRUE(profile.HasRight(255));
  EXPECT_EQ(profile.Administrator(), -1);
  EXPECT_EQ(profile.OwnerOverride(), -1);
}

TEST_F(DataServerTest, ProfileValuesAreTheUsersColumns) {
  reg_.addUser(1, "O'Brien", "");
  const auto& profile = server_.Profile();
  profile->setUser("User1", "O'Brien", "", false);
  EXPECT_EQ(profile->Value("UserOptions"), Variant("0000000"));
  profile->Store("useroptions", "0000110");
  EXPECT_EQ(profile->Value("UserOptions"), Variant("0000110"));
  EXPECT_TRUE(profile->Value("Rights").isEmpty());
  EXPECT_RAISES(3265, (void)profile->Value("Colour"));
  profile->setUser("nobody's", "", "", false);
  EXPECT_TRUE(profile->Value("UserOptions").isEmpty()) << "a user without a row";
  EXPECT_RAISES(3021, profile->Store("UserOptions", "1"));
  const kvProfile alone;
  EXPECT_RAISES(3709, (void)alone.Value("UserOptions"));
}

}  // namespace
}  // namespace kv
