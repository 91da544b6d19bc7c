#include "cli/csv.h"

#include <gtest/gtest.h>

namespace kv::cli {
namespace {

using Records = std::vector<std::vector<std::string>>;

TEST(Csv, RecordsAndFields) {
  struct Case {
    std::string text;
    Records records;
  };
  const Case cases[] = {
      {"", {}},
      {"\r\n\n\r", {}},
      {"a,b\r\nc,d\r\n", {{"a", "b"}, {"c", "d"}}},
      {"a\nb\rc", {{"a"}, {"b"}, {"c"}}},
      {"a\n\r\n\nb", {{"a"}, {"b"}}},
      {",", {{"", ""}}},
      {"a,\nb", {{"a", ""}, {"b"}}},
      {" a , b", {{" a ", " b"}}},
      {"\"\"", {{""}}},
      {"\"a,\r\nb\"\"c\",d", {{"a,\r\nb\"c", "d"}}},
      {"\"\"\"\"\n", {{"\""}}},
      {std::string("a\0b,c", 5), {{std::string("a\0b", 3), "c"}}},
  };
  for (const auto& c : cases) {
    Records records;
    EXPECT_TRUE(readCsv(c.text, records)) << c.text;
    EXPECT_EQ(records, c.records) << c.text;
  }
}

TEST(Csv, QuotationMarksOutOfPlace) {
  for (const char* text : {"x\na\"", "x\n\"", "x\n\"a", "x\n\"a\"b", "x\n\"a\" ,b", "x\n \"a\"",
                           "x\na,b\"c\"", "x\n\"a\"\"", "x\na,\""}) {
    Records records;
    EXPECT_FALSE(readCsv(text, records)) << text;
    EXPECT_EQ(records, (Records{{"x"}})) << text;
  }
}

TEST(Csv, WrittenFieldsAreReadBack) {
  for (const std::string text : {"", "a", "a,b", "\"", "\"\"a\r\n", " \n"}) {
    Records records;
    EXPECT_TRUE(readCsv(csvField(text), records));
    EXPECT_EQ(records, (Records{{text}}));
  }
}

}  // namespace
}  // namespace kv::cli
