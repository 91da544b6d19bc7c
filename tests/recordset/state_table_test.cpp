// SPDX-License-Identifier: Apache-2.0
// Every state of a record set against every operation: what may be done when, and the number raised
// where it may not.

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "support/error_check.h"
#include "support/test_register.h"

namespace kv {
namespace {

enum State {
  Closed,
  Empty,
  AtBof,
  OnRow,
  AtEof,
  OnHole,
  Editing,
  Adding,
  ReadOnly,
  Keyless,
  Disconnected,
  kStates
};
constexpr const char* kStateNames[] = {"closed",
                                       "empty",
                                       "at Bof",
                                       "on a row",
                                       "at Eof",
                                       "on a hole",
                                       "editing",
                                       "adding",
                                       "read-only",
                                       "without keys",
                                       "without a connection"};

struct Row {
  const char* name;
  void (*operation)(Recordset&);
  std::int32_t expected[kStates];
};

// clang-format off
const Row kTable[] = {
    //                                                             Closed Empty  Bof    Row   Eof   Hole  Edit  Add   RO    Keyless Disconnected
    {"Close",           [](Recordset& r) { r.Close(); },           {3704, 0,     0,     0,    0,    0,    3219, 3219, 0,    0, 0}},
    {"EditMode",        [](Recordset& r) { (void)r.EditMode(); },  {3704, 0,     0,     0,    0,    0,    0,    0,    0,    0, 0}},
    {"Eof",             [](Recordset& r) { (void)r.Eof(); },       {3704, 0,     0,     0,    0,    0,    0,    0,    0,    0, 0}},
    {"Bof",             [](Recordset& r) { (void)r.Bof(); },       {3704, 0,     0,     0,    0,    0,    0,    0,    0,    0, 0}},
    {"RecordCount",     [](Recordset& r) { (void)r.RecordCount(); },{3704, 0,    0,     0,    0,    0,    0,    0,    0,    0, 0}},
    {"Supports",        [](Recordset& r) { (void)r.Supports(0); }, {3704, 0,     0,     0,    0,    0,    0,    0,    0,    0, 0}},
    {"CursorType",      [](Recordset& r) { r.CursorType(1); },     {0,    3705,  3705,  3705, 3705, 3705, 3705, 3705, 3705, 3705, 3705}},
    {"LockType",        [](Recordset& r) { r.LockType(3); },       {0,    3705,  3705,  3705, 3705, 3705, 3705, 3705, 3705, 3705, 3705}},
    {"Open",            [](Recordset& r) { r.Open(); },            {3709, 3705,  3705,  3705, 3705, 3705, 3705, 3705, 3705, 3705, 3705}},
    {"read a field",    [](Recordset& r) { (void)r.Fields("Keyword")->Value(); },
                                                                   {3704, 3021,  3021,  0,    3021, 3021, 0,    0,    0,    0, 3709}},
    {"read text",       [](Recordset& r) { (void)r.Fields("Keyword")->Text(); },
                                                                   {3704, 3021,  3021,  0,    3021, 3021, 0,    0,    0,    0, 3709}},
    {"IsNull",          [](Recordset& r) { (void)r.Fields("Keyword")->IsNull(); },
                                                                   {3704, 3021,  3021,  0,    3021, 3021, 0,    0,    0,    0, 3709}},
    {"OriginalValue",   [](Recordset& r) { (void)r.Fields("Keyword")->OriginalValue(); },
                                                                   {3704, 3021,  3021,  0,    3021, 3021, 0,    0,    0,    0, 3709}},
    {"assign a field",  [](Recordset& r) { r.Fields("Keyword")->Value("x"); },
                                                                   {3704, 3021,  3021,  0,    3021, 3021, 0,    0,    3251, 3251, 3709}},
    {"MoveFirst",       [](Recordset& r) { r.MoveFirst(); },       {3704, 3021,  0,     0,    0,    0,    0,    0,    0,    0, 3709}},
    {"MoveLast",        [](Recordset& r) { r.MoveLast(); },        {3704, 3021,  0,     0,    0,    0,    0,    0,    0,    0, 3709}},
    {"MoveNext",        [](Recordset& r) { r.MoveNext(); },        {3704, 3021,  0,     0,    3021, 0,    0,    0,    0,    0, 3709}},
    {"MovePrevious",    [](Recordset& r) { r.MovePrevious(); },    {3704, 3021,  3021,  0,    0,    0,    0,    0,    0,    0, 3709}},
    {"Move 0",          [](Recordset& r) { r.Move(0); },           {3704, 3021,  0,     0,    0,    0,    0,    0,    0,    0, 3709}},
    {"Move 1",          [](Recordset& r) { r.Move(1); },           {3704, 3021,  0,     0,    3021, 0,    0,    0,    0,    0, 3709}},
    {"Move -1",         [](Recordset& r) { r.Move(-1); },          {3704, 3021,  3021,  0,    0,    0,    0,    0,    0,    0, 3709}},
    {"Find",            [](Recordset& r) { r.Find("Keyword = 'b'"); }, {3704, 0,  0,    0,    0,    0,    0,    0,    0,    0, 3709}},
    {"Bookmark",        [](Recordset& r) { (void)r.Bookmark(); },  {3704, 3021,  3021,  0,    3021, 3021, 0,    3021, 0,    0, 0}},
    {"go to a bookmark",[](Recordset& r) { r.Bookmark(4294967296.0 + 2); }, {3704, 3001, 0, 0, 0,   0,    0,    0,    0,    0, 3709}},
    {"AbsolutePosition",[](Recordset& r) { (void)r.AbsolutePosition(); }, {3704, 0, 0,  0,    0,    0,    0,    0,    0,    0, 0}},
    {"go to place 1",   [](Recordset& r) { r.AbsolutePosition(1); }, {3704, 3001, 0,    0,    0,    0,    0,    0,    0,    0, 3709}},
    {"AddNew",          [](Recordset& r) { r.AddNew(); },          {3704, 0,     0,     0,    0,    0,    0,    0,    3251, 3251, 3709}},
    {"Update",          [](Recordset& r) { r.Update(); },          {3704, 0,     0,     0,    0,    0,    0,    0,    0,    0, 0}},
    {"CancelUpdate",    [](Recordset& r) { r.CancelUpdate(); },    {3704, 0,     0,     0,    0,    0,    0,    0,    0,    0, 0}},
    {"Delete",          [](Recordset& r) { r.Delete(); },          {3704, 3021,  3021,  0,    3021, 3021, 0,    3219, 3251, 3251, 3709}},
    {"DeleteAll",       [](Recordset& r) { r.DeleteAll(); },       {3704, 0,     0,     0,    0,    0,    0,    3219, 3251, 3251, 3709}},
    {"Requery",         [](Recordset& r) { r.Requery(); },         {3704, 0,     0,     0,    0,    0,    0,    0,    0,    0, 3709}},
    {"GetRows",         [](Recordset& r) { (void)r.GetRows(1); },  {3704, 3021,  3021,  0,    3021, 0,    0,    0,    0,    0, 3709}},
    {"Clone",           [](Recordset& r) { (void)r.Clone(); },     {3704, 0,     0,     0,    0,    0,    0,    0,    0,    0, 0}},
    {"Filter",          [](Recordset& r) { r.Filter("Keyword = 'b'"); }, {3704, 0, 0,   0,    0,    0,    0,    0,    0,    0, 3709}},
    {"Sort",            [](Recordset& r) { r.Sort("Keyword"); },   {3704, 0,     0,     0,    0,    0,    0,    0,    0,    0, 3709}},
};
// clang-format on

Ref<Recordset> inState(const test::TestRegister& reg, State state) {
  const std::string all = "Select * From Keywords";
  Ref<Recordset> rs;
  switch (state) {
    case Closed:
      rs = reg.open(all);
      rs->Close();
      return rs;
    case Empty: return reg.open("Select * From Keywords Where Keyword = 'none'");
    case ReadOnly: return reg.open(all, kReadOnly);
    case Keyless: return reg.open("Select Distinct FieldName, Keyword From Keywords");
    case Disconnected: {
      const auto other = reg.openAnother();
      rs = other->OpenRecordset(all);
      (void)rs->Fields("Keyword")->Value();
      other->Close();
      return rs;
    }
    case AtBof:
    case OnRow:
    case AtEof:
    case OnHole:
    case Editing:
    case Adding:
    case kStates: break;
  }
  rs = reg.open(all);
  rs->MoveNext();
  if (state == AtBof) rs->Move(-5);
  if (state == AtEof) rs->Move(5);
  if (state == OnHole) rs->Delete();
  if (state == Editing) rs->Fields("Keyword")->Value("edited");
  if (state == Adding) rs->AddNew();
  return rs;
}

TEST(StateTable, EveryStateAgainstEveryOperation) {
  const test::TestRegister reg;
  for (const auto& row : kTable) {
    for (int state = 0; state < kStates; ++state) {
      reg.execute("Delete * From Keywords");
      for (const char* word : {"a", "b", "c"})
        reg.execute(fmt::format("Insert Into Keywords Values ('F', '{}')", word));
      const auto rs = inState(reg, static_cast<State>(state));
      EXPECT_EQ(test::numberOf([&] { row.operation(*rs); }), row.expected[state])
          << row.name << " when " << kStateNames[state];
    }
  }
}

}  // namespace
}  // namespace kv
