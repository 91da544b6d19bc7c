// SPDX-License-Identifier: Apache-2.0
#include "data/connection_string.h"

#include <gtest/gtest.h>

#include "data/connection.h"
#include "support/error_check.h"
#include "support/temp_folder.h"

namespace kv {
namespace {

std::string location(const char* text) { return parseConnectionString(text).location; }

TEST(ConnectionString, NamesALocation) {
  EXPECT_EQ(location("Provider=Microsoft.Jet.OLEDB.3.51;Persist Security Info=False;Data "
                     "Source=/data/my register.kvv"),
            "/data/my register.kvv");
  EXPECT_EQ(location("data source = a.kvv ; Lock Timeout=3"), "a.kvv");
  EXPECT_EQ(location("Data Source=\"a;b=c.kvv\";Page Cache=4"), "a;b=c.kvv");
  EXPECT_EQ(location("Data Source='a\"b'"), "a\"b");
  EXPECT_EQ(location("registers/a=b.kvv"), "registers/a=b.kvv") << "a bare path";
  EXPECT_EQ(location("  a.kvv "), "a.kvv");
}

TEST(ConnectionString, HasSettings) {
  const auto options =
      parseConnectionString("Data Source=a;Lock Timeout=0.25;page cache=4;Memory Map=0;User ID=x");
  EXPECT_EQ(options.lockTimeout.count(), 250);
  EXPECT_EQ(options.cacheMiB, 4);
  EXPECT_EQ(options.memoryMapMiB, 0);
}

TEST(ConnectionString, RefusesWhatItCannotRead) {
  for (const char* bad : {"Data Source=\"a", "Data Source=a;rubbish", "Data Source=\"a\"b",
                          "Data Source=a;Lock Timeout=soon", "Data Source=a;Page Cache=-1",
                          "Data Source=a;Memory Map=1e999"})
    EXPECT_RAISES(3001, (void)parseConnectionString(bad));
  for (const char* none : {"", "  ", "Data Source=", "Provider=x;Data Source=;"})
    EXPECT_RAISES(3709, (void)parseConnectionString(none));
}

TEST(ConnectionString, AServerThatCannotBeReachedIsSaidSo) {
  const test::TempFolder folder;
  for (const std::string& server :
       std::vector<std::string>{"postgresql://user@/db?host=" + folder.path().string(),
                                "Data Source=postgres://user@/db?host=" + folder.path().string(),
                                "Data Source='PostgreSQL://user@localhost:1/db'"}) {
    const auto error = test::errorOf([&] { (void)kvConnection::open(server); });
    ASSERT_TRUE(error) << server;
    EXPECT_EQ(error->number(), kEngineFailure);
    EXPECT_THAT(error->description(),
                testing::StartsWith("The server cannot be reached, or does not let this user in."));
  }
}

}  // namespace
}  // namespace kv
