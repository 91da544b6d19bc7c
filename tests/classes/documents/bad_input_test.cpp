// SPDX-License-Identifier: Apache-2.0
// Hostile and mistaken values in every identifier and field name that clsVeskDocument takes.
#include <gtest/gtest.h>

#include <functional>

#include "classes/documents/document_session.h"
#include "common/clock.h"

namespace kv {
namespace {

using test::at;
using test::LoadedDocument;
using test::Texts;

struct IdOperation {
  const char* name;
  std::function<void(const std::string& id)> run;
  std::int32_t notFound;  // what it raises for a document that does not exist; 0: nothing
};

class BadInput : public test::DocumentSession<test::SessionTest> {
 protected:
  BadInput() {
    logIn("Anna");
    addDocument("D1", "one", "Controlled = True, CurrentRevID = 4");
    addEverythingOf("D1");
    set_ = document().Records(0, "", "Select * From Documents");
  }
  // Every operation that takes a document's identifier, but not Add, which makes one.
  std::vector<IdOperation> operations() {
    return {
        {"Record", [&](const std::string& id) { (void)document().Record(id); }, 0},
        {"LoadData", [&](const std::string& id) { LoadedDocument().from(document(), id); },
         kErrorBase + 2603},
        {"LoadData from a set",
         [&](const std::string& id) { LoadedDocument().from(document(), id, set_); },
         kErrorBase + 2601},
        {"SaveData", [&](const std::string& id) { save(id, "saved"); }, kErrorBase + 2606},
        {"SaveData into a set", [&](const std::string& id) { save(id, "saved", set_); },
         kErrorBase + 2604},
        {"Value", [&](const std::string& id) { (void)document().Value(id, "DocumentTitle"); }, 0},
        {"SetValue",
         [&](const std::string& id) { document().SetValue(id, "DocumentTitle", "set"); }, 0},
        {"HasCurrentRevision",
         [&](const std::string& id) { (void)document().HasCurrentRevision(id); }, 0},
        {"MakeUnControlled", [&](const std::string& id) { document().MakeUnControlled(id); }, 0},
        {"Delete", [&](const std::string& id) { document().Delete(id); }, 0},
        {"Delete with the row", [&](const std::string& id) { document().Delete(id, true); }, 0},
    };
  }
  Ref<Recordset> set_;
};

TEST_F(BadInput, ValuesThatWouldChangeTheStatementAreRefused) {
  const auto before = everything();
  for (const auto& operation : operations()) {
    for (const std::string& id :
         {std::string("O'Brien"), std::string("'"), std::string("D1'"), std::string("'''"),
          std::string("x' or 'a'='a"), std::string("D1'; Delete * From Documents"),
          std::string(9999, '\''), std::string("caf\xE9"), std::string("D1\0", 3)}) {
      const auto statements = statementsOf([&] {
        EXPECT_RAISES(kSyntax, operation.run(id)) << operation.name << ": " << id.substr(0, 40);
      });
      EXPECT_EQ(statements, Texts{}) << operation.name << " ran something";
      ASSERT_EQ(set_->State(), kStateOpen);
      ASSERT_EQ(set_->EditMode(), kEditNone);
    }
  }
  EXPECT_EQ(everything(), before);
}

TEST_F(BadInput, IdentifiersThatNameNoDocument) {
  const auto before = everything();
  for (const auto& operation : operations()) {
    for (const std::string& id :
         {std::string(), std::string(" "), std::string("nobody"), std::string("D1 "),
          std::string("D%"), std::string("D?"), std::string("[D1]"), std::string("D1''"),
          std::string("x'' or ''a''=''a"), std::string("\"D1\""), std::string("-1"),
          std::string(10000, 'D'), std::string(10000, '\''), std::string("a\r\nb")}) {
      EXPECT_RAISES(operation.notFound, operation.run(id))
          << operation.name << ": " << id.substr(0, 40);
    }
  }
  EXPECT_EQ(everything(), before);
}

TEST_F(BadInput, ADoubledApostropheNamesTheDocumentWithOne) {
  const std::string id = "O''Brien";
  const auto rowOfIt = [&] { return row(id).substr(0, row(id).find('|')); };
  addDocument(id, "before", "Controlled = True, CurrentRevID = 4");
  addEverythingOf(id);
  set_->Requery();
  EXPECT_EQ(document().Record(id)->Fields("DocumentID")->Value(), Variant("O'Brien"));
  LoadedDocument loaded;
  loaded.from(document(), id);
  EXPECT_EQ(loaded.title, "before");
  LoadedDocument fromSet;
  fromSet.from(document(), id, set_);
  EXPECT_EQ(fromSet.title, "before");
  save(id, "first");
  EXPECT_EQ(rowOfIt(), "first title");
  save(id, "second", set_);
  EXPECT_EQ(rowOfIt(), "second title");
  EXPECT_EQ(document().Value(id, "DocumentTitle"), Variant("second title"));
  document().SetValue(id, "DocumentTitle", "third");
  EXPECT_EQ(rowOfIt(), "third");
  EXPECT_TRUE(document().HasCurrentRevision(id));
  document().MakeUnControlled(id);
  EXPECT_EQ(linksOf(id), "0 1 1 0 1");
  document().Delete(id);
  EXPECT_EQ(linksOf(id), "0 0 0 0 0");
  document().Delete(id, true);
  EXPECT_EQ(reg_.value("Select DocumentID From Documents"), "D1");
  EXPECT_EQ(linksOf("D1"), "2 6 1 2 2");
}

TEST_F(BadInput, AddRefusesAUserWhoWouldChangeTheStatement) {
  const StoppedClock clock(at(2001, 2, 3, 14, 5, 9));
  const auto before = everything();
  const auto add = [&](const std::string& user, const Ref<Recordset>& rs) {
    document().Add(user, "t", "", "", "", "", "", "", 0, "", "B", "", true, true, false, rs);
  };
  set_->MoveFirst();
  for (const auto& rs : {Ref<Recordset>(), set_}) {
    for (const std::string& user : {std::string("O'Brien"), std::string("x' or 'a'='a"),
                                    std::string("caf\xE9"), std::string("U\0", 2)}) {
      EXPECT_THROW(add(user, rs), Error) << user;
      EXPECT_EQ(everything(), before) << user;
    }
    EXPECT_RAISES(kSyntax, add("O'Brien", rs));
    EXPECT_RAISES(kWrongType, add(std::string(10000, 'U'), rs)) << "no column is that wide";
    EXPECT_EQ(everything(), before);
  }
  EXPECT_EQ(set_->EditMode(), kEditNone);
  EXPECT_EQ(set_->RecordCount(), 1);
  EXPECT_EQ(set_->AbsolutePosition(), 1);
  EXPECT_EQ(document().Add("", "t", "", "", "", "", "", "", 0, "", "", "", false), "020301140509")
      << "nobody's document is named after the moment alone";
}

TEST_F(BadInput, AddOfAUserWithAnApostropheGivenAsItStandsInStatements) {
  const StoppedClock clock(at(2001, 2, 3, 14, 5, 9));
  const std::string id =
      document().Add("O''Brien", "t", "", "", "", "", "", "", 0, "", "B", "", false, true);
  EXPECT_EQ(id, "O'Brien020301140509") << "as it is stored";
  EXPECT_EQ(reg_.rows("Select DocumentID, ResponsibleID, RevisionLevel From Revisions Where "
                      "ResponsibleID = 'O''Brien'"),
            Texts{"O'Brien020301140509|O'Brien|B"});
  EXPECT_EQ(document().Record("O''Brien020301140509")->RecordCount(), 1);
}

TEST_F(BadInput, FieldValuesAreStoredWhateverTheyHold) {
  const std::string hostile =
      "O'Brien's \"best\"; Delete * From Documents -- #1# [x] {y} ? %\r\n\t";
  document().SaveData("D1", hostile, "", hostile, hostile, hostile, hostile,
                      std::string(10000, '\''), false, true, hostile);
  LoadedDocument loaded;
  loaded.from(document(), "D1");
  EXPECT_EQ(loaded.title, hostile);
  EXPECT_EQ(loaded.user4, hostile);
  EXPECT_EQ(loaded.notes, std::string(10000, '\''));
  document().SetValue("D1", "Location", "'");
  EXPECT_EQ(document().Value("D1", "Location"), Variant("'"));
  const std::string id =
      document().Add("U", hostile, "'", "", "", "", "", "", 0, hostile, "'", "", true, true);
  EXPECT_EQ(document().Value(id, "DocumentTitle"), Variant(hostile));
  EXPECT_EQ(reg_.value("Select RevisionLevel From Revisions Where DocumentID = '" + id + "'"), "'");
}

TEST_F(BadInput, TextThatIsTooLongIsRefusedWhole) {
  const auto before = everything();
  const std::string tooLong(10000, 'x');
  EXPECT_RAISES(kWrongType,
                document().SaveData("D1", tooLong, "n", "", "", "", "", "", false, false, ""));
  EXPECT_RAISES(kWrongType, document().SetValue("D1", "DocumentTitle", tooLong));
  for (const char* where : {"title", "level"}) {
    EXPECT_RAISES(
        kWrongType,
        document().Add("U", where == std::string("title") ? tooLong : "t", "", "", "", "", "", "",
                       0, "", where == std::string("level") ? tooLong : "B", "", true, true))
        << where;
  }
  EXPECT_EQ(everything(), before);
}

TEST_F(BadInput, WhatIsNoDateIsRefused) {
  const auto before = everything();
  for (const char* date : {"soon", "2001-13-40", "'"}) {
    EXPECT_RAISES(kWrongType,
                  document().Add("U", "t", "", "", "", "", "", "", 0, "", "B", date, true, true))
        << date;
    EXPECT_RAISES(kWrongType, document().SetValue("D1", "EffectiveDate", date)) << date;
  }
  EXPECT_RAISES(kWrongType, document().SetValue("D1", "EffectiveDate", ""));
  EXPECT_RAISES(kWrongType, document().SetValue("D1", "CurrentRevID", "none"));
  EXPECT_EQ(everything(), before);
}

TEST_F(BadInput, UnknownFieldNames) {
  const auto before = everything();
  for (const std::string& name :
       {std::string("NoSuchColumn"), std::string(), std::string("Document Title"),
        std::string("Documents.DocumentTitle"), std::string("[DocumentTitle]"),
        std::string("DocumentTitle'"), std::string("O'Brien"), std::string("*"),
        std::string(10000, 'n'), std::string("caf\xE9")}) {
    const std::string shortName = name.substr(0, 40);
    EXPECT_RAISES(kNoSuchItem, (void)document().Value("D1", name)) << shortName;
    EXPECT_RAISES(kNoSuchItem, (void)document().IDValue(1, name)) << shortName;
    EXPECT_RAISES(kNoSuchItem, document().SetValue("D1", name, "x")) << shortName;
  }
  EXPECT_EQ(everything(), before);
}

TEST_F(BadInput, ClosedSetsAreRefused) {
  const auto before = everything();
  set_->Close();
  EXPECT_RAISES(kClosed, LoadedDocument().from(document(), "D1", set_));
  EXPECT_RAISES(kClosed, save("D1", "new", set_));
  EXPECT_RAISES(kClosed, document().Add("U", "t", "", "", "", "", "", "", 0, "", "", "", false,
                                        false, false, set_));
  EXPECT_EQ(everything(), before);
}

TEST_F(BadInput, NoQueryIsNoObject) { EXPECT_RAISES(kObjectNotSet, document().SaveQuery(nullptr)); }

}  // namespace
}  // namespace kv
