// SPDX-License-Identifier: Apache-2.0
// What may be found where a register was expected, and who may read it.

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <thread>

#include "data/connection.h"
#include "schema/create_register.h"
#include "support/error_check.h"
#include "support/other_user.h"
#include "support/shared_data.h"
#include "support/test_register.h"

namespace kv {
namespace {

using testing::StartsWith;

std::string refusal(const std::string& path) {
  const auto error = test::errorOf([&] { (void)kvConnection::open(path); });
  if (!error) return "opened";
  EXPECT_EQ(error->number(), kEngineFailure);
  EXPECT_EQ(error->source(), "kvData");
  return error->description();
}

TEST(OpenFile, ARegisterIsOneFromTheMomentItIsMade) {
  const test::TempFolder folder;
  const auto made = createRegister(folder.file("new.kvv"));
  EXPECT_EQ(refusal(folder.file("new.kvv")), "opened") << "while its maker still has it open";
}

TEST(OpenFile, SaysWhatIsThereInstead) {
  const test::TempFolder folder;
  const std::string access(100, '\0');
  const auto jet = [&](std::string name, char version) {
    std::string bytes(4096, '\0');
    bytes.replace(1, 3, std::string("\1\0\0", 3));
    bytes.replace(4, name.size(), name);
    bytes[20] = version;
    return bytes;
  };
  struct Case {
    const char* file;
    std::string bytes;
    const char* refusal;
  };
  const Case cases[] = {
      {"empty", "", "The file is not a register:"},
      {"text", "Dear diary", "The file is not a register:"},
      {"zeros", access, "The file is not a register:"},
      {"jet3.mdb", jet("Standard Jet DB", 0),
       "This is an Access database file, Access 97 or older (Jet 3), not a register:"},
      {"jet4.mdb", jet("Standard Jet DB", 1),
       "This is an Access database file, Access 2000 to 2003 (Jet 4), not a register:"},
      {"ace.accdb", jet("Standard ACE DB", 2),
       "This is an Access database file, Access 2007 (ACE 12), not a register:"},
      {"cut", std::string("SQLite format 3\0", 16), "The file is not a register:"},
  };
  for (const auto& c : cases) {
    const std::string path = folder.file(c.file);
    test::write(path, c.bytes);
    EXPECT_THAT(refusal(path), StartsWith(c.refusal)) << c.file;
    EXPECT_EQ(test::contents(path), c.bytes) << "the file stays as it was";
  }
  EXPECT_THAT(refusal(folder.file("missing.kvv")), StartsWith("There is no such file:"));
  EXPECT_THAT(refusal(folder.path().string()), StartsWith("This is not a file:"));
}

TEST(OpenFile, AnSqliteDatabaseOfSomebodyElseIsNoRegister) {
  const test::TempFolder folder;
  const std::string path = folder.file("other.db");
  sqlite3* db = nullptr;
  ASSERT_EQ(sqlite3_open(path.c_str(), &db), SQLITE_OK);
  sqlite3_exec(db, "CREATE TABLE VeskConfig (DatabaseVersion TEXT)", nullptr, nullptr, nullptr);
  sqlite3_close(db);
  EXPECT_THAT(refusal(path), StartsWith("The file is an SQLite database, but not a register:"));
}

TEST(OpenFile, ARealAccessFileIsRecognised) {
  REQUIRE_SHARED_DATA(folder, "access");
  EXPECT_THAT(refusal(folder + "/proposals-2000.mdb"),
              StartsWith("This is an Access database file, Access 2000 to 2003"));
  EXPECT_THAT(refusal(folder + "/proposals-2007.accdb"),
              StartsWith("This is an Access database file, Access 2007"));
}

TEST(OpenFile, ADamagedRegisterIsRefusedWhenItIsRead) {
  const test::TestRegister reg;
  reg.connection()->Close();
  std::string bytes = test::contents(reg.path());
  for (std::size_t i = 4096; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 31);
  test::write(reg.path(), bytes);
  EXPECT_THAT(refusal(reg.path()), StartsWith("The file is damaged."));
}

TEST(OpenFile, NamesThatMeanSomethingToTheEngineAreNames) {
  const test::TempFolder folder;
  EXPECT_THAT(refusal(":memory:"), StartsWith("There is no such file:"));
  EXPECT_THAT(refusal("file:x?mode=memory"), StartsWith("There is no such file:"));
}

class ReadOnlyRegister : public testing::Test {
 protected:
  ReadOnlyRegister() {
    reg_.execute("Insert Into Documents (DocumentTitle) Values ('One')");
    reg_.connection()->Close();
    chmod(reg_.folder().path().c_str(), 0755);
    chmod(reg_.path().c_str(), 0644);
  }
  // What an ordinary user sees and is told.
  std::string look() {
    return test::asOrdinaryUser([&] {
      const auto connection = kvConnection::open(reg_.path());
      const auto rs = connection->OpenRecordset("Select * From Documents");
      std::string out = std::to_string(rs->RecordCount()) + " " +
                        test::shown(rs->Fields("DocumentTitle")->Value());
      const auto error = test::errorOf([&] {
        rs->Fields("DocumentTitle")->Value("Two");
        rs->Update();
      });
      out += error ? " | " + std::to_string(error->number()) + " " + error->description()
                   : " | written";
      return out;
    });
  }
  test::TestRegister reg_;
};

TEST_F(ReadOnlyRegister, InAFolderThatCannotBeWrittenIsReadAllTheSame) {
  chmod(reg_.folder().path().c_str(), 0555);
  const std::string before = test::contents(reg_.path());
  EXPECT_THAT(look(), StartsWith("1 One | -2147467259 The register is read-only."));
  EXPECT_EQ(test::contents(reg_.path()), before);
  chmod(reg_.folder().path().c_str(), 0755);
}

TEST_F(ReadOnlyRegister, AFileThatCannotBeWrittenIsReadAllTheSame) {
  chmod(reg_.folder().path().c_str(), 0777);
  chmod(reg_.path().c_str(), 0444);
  EXPECT_THAT(look(), StartsWith("1 One | -2147467259 The register is read-only."));
}

TEST_F(ReadOnlyRegister, AFileThatCannotBeReadIsRefused) {
  chmod(reg_.path().c_str(), 0000);
  EXPECT_THAT(look(), StartsWith("error -2147467259: The file could not be opened for reading:"));
  chmod(reg_.path().c_str(), 0644);
}

TEST_F(ReadOnlyRegister, ChangesOfSomebodyWithMoreRightsAreNoticed) {
  chmod(reg_.folder().path().c_str(), 0555);
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  // The child opens, waits until the parent has written, and reads again.
  int back[2];
  ASSERT_EQ(pipe(back), 0);
  std::thread writer([&] {
    char c = 0;
    ASSERT_EQ(read(back[0], &c, 1), 1);
    chmod(reg_.folder().path().c_str(), 0755);
    {
      const auto connection = kvConnection::open(reg_.path());
      std::int32_t affected = 0;
      connection->Execute("Update Documents Set DocumentTitle = 'Changed'", affected);
      connection->Close();
    }
    chmod(reg_.folder().path().c_str(), 0555);
    ASSERT_EQ(write(ends[1], "x", 1), 1);
  });
  const std::string answer = test::asOrdinaryUser([&] {
    const auto connection = kvConnection::open(reg_.path());
    (void)connection->OpenRecordset("Select * From Documents");
    char c = 0;
    if (write(back[1], "x", 1) != 1 || read(ends[0], &c, 1) != 1) return std::string("pipe");
    return test::descriptionOf([&] { (void)connection->OpenRecordset("Select * From Documents"); });
  });
  writer.join();
  chmod(reg_.folder().path().c_str(), 0755);
  EXPECT_THAT(answer, StartsWith("The register was changed by another process"));
}

}  // namespace
}  // namespace kv
