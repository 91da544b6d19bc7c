// SPDX-License-Identifier: Apache-2.0
// kvvesk copy: a register in another place, the same to the last value.

#include "cli/verb_register.h"
#include "data/connection.h"
#include "schema/copy_register.h"
#include "support/test_server.h"

namespace kv {
namespace {

using testing::HasSubstr;

class CopyVerb : public test::VerbTest {
 protected:
  [[nodiscard]] static std::string checksums(const std::string& location) {
    std::string out;
    for (const auto& table : tablesOf(kvConnection::open("Data Source='" + location + "'")))
      out += table.name + " " + std::to_string(table.rows) + " " + std::to_string(table.checksum) +
             "\n";
    return out;
  }
};

TEST_F(CopyVerb, MakesTheSameRegisterElsewhere) {
  const std::string file = reg_.file("copy.kvv");
  const std::string out = reg_.done("copy", {file});
  EXPECT_THAT(out, HasSubstr("Documents        3     "));
  EXPECT_THAT(out, HasSubstr("copied 20 rows; both sides are the same\n"));
  EXPECT_EQ(checksums(file), checksums(reg_.path()));
  EXPECT_EQ(test::run({"sql", file, "-u", "Anna", "--csv",
                       "Select DocumentTitle From Documents Where DocumentID = 'd1'"})
                .out,
            "\"DocumentTitle\"\r\n\"Plan's end\"\r\n");
}

TEST_F(CopyVerb, GoesToAServerAndBack) {
  SERVERS_ONLY();
  const std::string file = reg_.file("copy.kvv");
  const std::string database = test::TestServer::newDatabase();
  (void)reg_.done("copy", {database});
  EXPECT_EQ(test::run({"copy", database, "-u", "Anna", file}).code, 0);
  EXPECT_EQ(checksums(file), checksums(reg_.path()));
  EXPECT_EQ(checksums(database), checksums(reg_.path()));
  test::TestServer::drop(database);
}

TEST_F(CopyVerb, OverwritesNothing) {
  EXPECT_THAT(refused("Anna", "copy", {reg_.path()}, 1), HasSubstr("-2147467259"));
  const std::string file = reg_.file("copy.kvv");
  (void)reg_.done("copy", {file});
  const std::string before = checksums(file);
  reg_.execute("Delete * From Documents");
  EXPECT_EQ(reg_.as("Anna", "copy", {file}).code, 1);
  EXPECT_EQ(checksums(file), before);
}

TEST_F(CopyVerb, IsForAdministrators) {
  const std::string file = reg_.file("copy.kvv");
  EXPECT_THAT(refused("Bert", "copy", {file}, 1),
              HasSubstr("only administrators may copy a register"));
  EXPECT_EQ(test::run({"sql", file, "-u", "Anna", "Select 1"}).code, 1) << "nothing was made";
}

}  // namespace
}  // namespace kv
