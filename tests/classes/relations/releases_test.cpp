// SPDX-License-Identifier: Apache-2.0
// What has been released: lists of copies, and single values of them.
#include <gtest/gtest.h>

#include "support/distribution_session.h"

namespace kv {
namespace {

using test::Texts;

constexpr const char* kCopies =
    "SELECT Personals.*, Revisions.RevisionLevel, Revisions.EffectiveDate, Revisions.RevUser1, "
    "Revisions.RevUser2, Revisions.ChangeDescription, Revisions.RevisionStatus, "
    "Revisions.RoutingStatus, Revisions.Location AS RevisionLocation, Revisions.ResponsibleID, "
    "Documents.DocumentNumber, Documents.DocumentTitle, Documents.RevisionLevel AS "
    "CurrentRevisionLevel, Documents.EffectiveDate AS CurrentEffectiveDate, Documents.DocUser1, "
    "Documents.DocUser2, Documents.DocUser3, Documents.DocUser4, Documents.DocumentNotes, "
    "Documents.SecurityLevel, Documents.CurrentRevID, Documents.Controlled, Documents.Location, "
    "Manuals.ManualName, Manuals.ManUser1, Manuals.ManUser2, Manuals.ManUser3, Manuals.ManUser4, "
    "Manuals.ManUserMemo FROM ((Personals Left JOIN Manuals ON Personals.ManualID = "
    "Manuals.ManualID) Left JOIN Documents ON Personals.DocumentID = Documents.DocumentID) Left "
    "JOIN Revisions ON Personals.RevisionID = Revisions.RevisionID ";

class Releases : public test::DistributionSession<test::SessionTest> {
 protected:
  Releases() {
    logIn("Bert");
    addDocument("D1", 2);
    addDocument("D2", 3);
    reg_.execute("Update Documents Set Controlled = False Where DocumentID = 'D2'");
    addManual("M1");
    addManual("M2");
    for (const char* level : {"A", "B", "C"})
      reg_.execute(
          fmt::format("Insert Into Revisions (DocumentID, RevisionLevel, RevisionStatus, "
                      "Location) Values ('D1', '{}', 0, 'shelf {}')",
                      level, level));
    reg_.execute("Update Documents Set RevisionLevel = 'B' Where DocumentID = 'D1'");
    hold("u", "D1", "0", true, "Null", 1);    // 1
    hold("u", "D2", "0", false, "Null", 9);   // 2
    hold("u", "D1", "M1", true, "'1'", 2);    // 3
    hold("u", "D2", "M1", true, "'1'", 3);    // 4
    hold("v", "D1", "M1", false, "'-1'", 2);  // 5
    hold("v", "D9", "M2", false, "'-1'", 2);  // 6
    hold("v", "D2", "M2", true, "Null", 3);   // 7
  }
  // The releases listed, by number.
  static Texts idsOf(const Ref<Recordset>& rs) {
    Texts out;
    for (; !rs->Eof(); rs->MoveNext()) out.push_back(test::shown(rs->Fields("ReleaseID")->Value()));
    return out;
  }
  std::int32_t documentQuery(const std::string& field, const Variant& value, int code) {
    const auto query = vesk_->Document()->AddQuery();
    query->SetQueryValue(field, value);
    query->SetQueryValue(field + "Key", code);
    vesk_->Document()->SaveQuery(query);
    return query->id();
  }
  std::int32_t manualQuery(const std::string& name) {
    const auto query = vesk_->Manual()->NewQuery();
    query->SetQueryValue("Field1", name);
    query->SetQueryValue("Field1Key", 0);
    vesk_->Manual()->SaveQuery(query);
    return query->id();
  }
  std::int32_t userQuery(const std::string& name, int code) {
    const auto query = vesk_->User()->NewQuery();
    query->SetQueryValue("UserName", name);
    query->SetQueryValue("UserNameOperator", code);
    vesk_->User()->SaveQuery(query);
    return query->id();
  }
};

struct ListCase {
  const char* user;
  const char* manual;
  const char* document;
  bool hard;
  const char* condition;
  Texts ids;
};

TEST_F(Releases, EachArgumentNarrowsTheList) {
  const ListCase cases[] = {
      {"", "", "", false, "Where HardCopy = 0", {"2", "5", "6"}},
      {"", "", "", true, "Where HardCopy <> 0", {"1", "3", "4", "7"}},
      {"u", "", "", true, "Where Personals.userid = 'u' and HardCopy <> 0", {"1", "3", "4"}},
      {"u", "", "", false, "Where Personals.userid = 'u' and HardCopy = 0", {"2"}},
      {"", "M1", "", true, "Where Personals.manualid = 'M1' and HardCopy <> 0", {"3", "4"}},
      {"", "0", "", true, "Where Personals.manualid = '0' and HardCopy <> 0", {"1"}},
      {"", "", "d1", true, "Where Personals.documentid = 'd1' and HardCopy <> 0", {"1", "3"}},
      {"u",
       "M1",
       "D2",
       true,
       "Where Personals.manualid = 'M1' and Personals.documentid = 'D2' and Personals.userid = "
       "'u' and HardCopy <> 0",
       {"4"}},
      {"nobody", "", "", true, "Where Personals.userid = 'nobody' and HardCopy <> 0", {}},
  };
  for (const auto& c : cases) {
    Ref<Recordset> rs;
    EXPECT_EQ(
        statementsOf([&] { rs = vesk_->Releases(c.user, c.manual, c.document, 0, 0, 0, c.hard); }),
        Texts{kCopies + std::string(c.condition)});
    EXPECT_EQ(idsOf(rs), c.ids) << c.condition;
  }
  EXPECT_EQ(statementsOf([&] { (void)vesk_->Releases(); }),
            Texts{kCopies + std::string("Where HardCopy = 0")});
}

TEST_F(Releases, TellWhatIsHeldAndWhatIsInForce) {
  const auto rs = vesk_->Releases("u", "", "D1", 0, 0, 0, true);
  const auto row = [&] {
    Texts out;
    for (const char* column :
         {"ReleaseID", "RevisionLevel", "RevisionLocation", "CurrentRevisionLevel", "CurrentRevID",
          "ManualName", "DocumentTitle", "CopyNumber"})
      out.push_back(test::shown(rs->Fields(column)->Value()));
    return out;
  };
  EXPECT_EQ(row(), (Texts{"1", "A", "shelf A", "B", "2", "~", "Title of D1", "~"})) << "stale";
  rs->MoveNext();
  EXPECT_EQ(row(), (Texts{"3", "B", "shelf B", "B", "2", "Name of M1", "Title of D1", "1"}));
  const auto lost = vesk_->Releases("v", "M2");
  EXPECT_EQ(test::shown(lost->Fields("DocumentTitle")->Value()), "~")
      << "copies of documents that are gone are listed too";
}

TEST_F(Releases, SavedQueriesNarrowTheList) {
  const std::int32_t controlled = documentQuery("DocType", 0, 0);
  const std::int32_t titled = documentQuery("Field1", "Title of D2", 0);
  const std::int32_t every = vesk_->Document()->AddQuery()->id();
  const std::int32_t first = manualQuery("Name of M1");
  const std::int32_t everyManual = vesk_->Manual()->NewQuery()->id();
  const std::int32_t everyUser = vesk_->User()->NewQuery()->id();
  const struct {
    std::int32_t manuals, documents, users;
    const char* document;
    const char* condition;
    Texts ids;
  } cases[] = {
      {0, controlled, 0, "", "Where Controlled <> 0 and HardCopy <> 0", {"1", "3"}},
      {0, titled, 0, "", "Where DocumentTitle = 'Title of D2' and HardCopy <> 0", {"4", "7"}},
      {0, every, 0, "", "Where HardCopy <> 0", {"1", "3", "4", "7"}},
      {first, 0, 0, "", "Where  ManualName = 'Name of M1' and HardCopy <> 0", {"3", "4"}},
      {first,
       controlled,
       0,
       "",
       "Where  ManualName = 'Name of M1' and Controlled <> 0 and HardCopy <> 0",
       {"3"}},
      {first,
       0,
       0,
       "D2",
       "Where  ManualName = 'Name of M1' and Personals.documentid = 'D2' and HardCopy <> 0",
       {"4"}},
      {everyManual, controlled, 0, "", "Where Controlled <> 0 and HardCopy <> 0", {"1", "3"}},
      {everyManual, every, everyUser, "", "Where HardCopy <> 0", {"1", "3", "4", "7"}},
  };
  for (const auto& c : cases) {
    Ref<Recordset> rs;
    EXPECT_EQ(statementsOf([&] {
                rs = vesk_->Releases("", "", c.document, c.manuals, c.documents, c.users, true);
              }),
              Texts{kCopies + std::string(c.condition)});
    EXPECT_EQ(idsOf(rs), c.ids) << c.condition;
  }
}

TEST_F(Releases, AQuerysApostropheIsDoubled) {
  reg_.execute("Update Documents Set DocumentTitle = 'O''Brien' Where DocumentID = 'D1'");
  EXPECT_EQ(idsOf(vesk_->Releases("", "", "", 0, documentQuery("Field1", "O'Brien", 0), 0, true)),
            (Texts{"1", "3"}));
}

TEST_F(Releases, AQueryForUsersFailsAsSoonAsACriterionApplies) {
  // No field types belong to this list, so that the criterion cannot be told; an unequal one can,
  // and then users are not in the statement.
  const std::int32_t equal = userQuery("u", 0);
  const std::int32_t unequal = userQuery("u", 4);
  const std::int32_t hostile = userQuery("x' or 'a'='a", 4);
  EXPECT_EQ(statementsOf([&] {
              EXPECT_RAISES(kInvalidCall, (void)vesk_->Releases("", "", "", 0, 0, equal));
              EXPECT_RAISES(kSyntax, (void)vesk_->Releases("", "", "", 0, 0, hostile));
            }),
            Texts{});
  EXPECT_EQ(statementsOf([&] {
              EXPECT_RAISES(kUnknownName, (void)vesk_->Releases("", "", "", 0, 0, unequal));
            }),
            Texts{kCopies + std::string("Where  UserName <> 'u' and HardCopy = 0")});
}

TEST_F(Releases, AQueryThatIsNotThereListsNothing) {
  EXPECT_EQ(statementsOf([&] {
              EXPECT_RAISES(kNoCurrentRow, (void)vesk_->Releases("", "", "", 999));
              EXPECT_RAISES(kNoCurrentRow, (void)vesk_->Releases("", "", "", 0, 999));
              EXPECT_RAISES(kNoCurrentRow, (void)vesk_->Releases("", "", "", 0, 0, 999));
              EXPECT_RAISES(kNoCurrentRow, (void)vesk_->Releases("", "", "", -1));
            }),
            Texts{});
}

TEST_F(Releases, IdentifiersThatWouldChangeTheStatementAreRefused) {
  for (const std::string& bad : {std::string("O'Brien"), std::string("x' or 'a'='a"),
                                 std::string("caf\xE9"), std::string("D1\0", 3)})
    EXPECT_EQ(statementsOf([&] {
                EXPECT_RAISES(kSyntax, (void)vesk_->Releases(bad));
                EXPECT_RAISES(kSyntax, (void)vesk_->Releases("", bad));
                EXPECT_RAISES(kSyntax, (void)vesk_->Releases("", "", bad));
              }),
              Texts{});
  EXPECT_EQ(vesk_->Releases("O''Brien")->RecordCount(), 0);
  EXPECT_EQ(vesk_->Releases(std::string(10000, 'u'))->RecordCount(), 0);
}

TEST_F(Releases, SingleValues) {
  EXPECT_EQ(statementsOf([&] {
              EXPECT_EQ(vesk_->ReleaseValue(3, "documentid"), Variant("D1"));
              EXPECT_TRUE(vesk_->ReleaseValue(1, "CopyNumber").isNull());
              EXPECT_EQ(vesk_->ReleaseValue(3, "HardCopy"), Variant(true));
              EXPECT_TRUE(vesk_->ReleaseValue(99, "DocumentID").isEmpty());
              EXPECT_TRUE(vesk_->ReleaseValue(-1, "DocumentID").isEmpty());
            }),
            (Texts{"Select * From Personals Where ReleaseID = 3",
                   "Select * From Personals Where ReleaseID = 1",
                   "Select * From Personals Where ReleaseID = 3",
                   "Select * From Personals Where ReleaseID = 99",
                   "Select * From Personals Where ReleaseID = -1"}));
  EXPECT_RAISES(kNoSuchItem, (void)vesk_->ReleaseValue(3, "NoSuchColumn"));
  EXPECT_TRUE(vesk_->ReleaseValue(99, "NoSuchColumn").isEmpty());
}

}  // namespace
}  // namespace kv
