// SPDX-License-Identifier: Apache-2.0
#include "desk/desk_register.h"

#include "desk/refusal.h"
#include "support/register_dump.h"

namespace kv::test {

namespace {

std::string switchedOn(const std::vector<int>& places, std::size_t length) {
  std::string text(length, '0');
  for (const int place : places) text[static_cast<std::size_t>(place) - 1] = '1';
  return text;
}

}  // namespace

DeskTest::DeskTest() {
  reg_.addUser(901, "Anna", "secret", true);
  reg_.addUser(902, "Bert", "secret", false, switchedOn({}, 255));
  reg_.addUser(903, "Carla", "secret", false, switchedOn({}, 255));
  for (const char* sql :
       {"Insert Into Documents (ID, DocumentID, DocumentTitle, DocumentNumber, RevisionLevel, "
        "EffectiveDate, Controlled, CurrentRevID) Values (901, 'D1', 'Plan''s end', 'P-1', 'A', "
        "#3/9/2001#, True, 901)",
        "Insert Into Documents (ID, DocumentID, DocumentTitle, DocumentNumber, RevisionLevel, "
        "EffectiveDate, Controlled, SecurityLevel, CurrentRevID) Values (902, 'D2', 'Budget', "
        "'P-2', '1', #4/1/2002#, True, True, 903)",
        "Insert Into Revisions (RevisionID, DocumentID, RevisionLevel, EffectiveDate, "
        "ResponsibleID, RoutingStatus, RevisionStatus) Values (901, 'D1', 'A', #3/9/2001#, "
        "'User903', 0, 1)",
        "Insert Into Revisions (RevisionID, DocumentID, RevisionLevel, ResponsibleID, "
        "RoutingStatus, RevisionStatus) Values (902, 'D1', 'B', 'User902', 0, 2)",
        "Insert Into Revisions (RevisionID, DocumentID, RevisionLevel, EffectiveDate, "
        "ResponsibleID, RoutingStatus, RevisionStatus) Values (903, 'D2', '1', #4/1/2002#, "
        "'User903', 0, 1)",
        "Insert Into Manuals (ID, ManualID, ManualName) Values (901, 'M1', 'Handbook')",
        "Insert Into Manuals (ID, ManualID, ManualName) Values (902, 'M2', 'Annex')",
        "Insert Into ManualContents (ManualID, DocumentID, Position) Values ('M1', 'D1', 1)",
        "Insert Into DocumentQuerys (QueryID, QueryName) Values (1, 'All documents')"})
    reg_.execute(sql);
}

DeskTest::~DeskTest() {
  for (const auto& vesk : open_) vesk->CloseSession();
}

desk::Session DeskTest::as(const std::string& name) {
  auto vesk = clsVesk::create(kCheapPasswords);
  vesk->OpenConnection("Data Source=" + reg_.path());
  open_.push_back(vesk);
  vesk->Login(name, "secret");
  return desk::Session(vesk);
}

desk::Session DeskTest::as(const std::string& name, const std::vector<int>& rights) {
  reg_.execute("Update VeskProfiles Set Rights = '" + switchedOn(rights, 255) +
               "' Where UserName = '" + name + "'");
  return as(name);
}

void DeskTest::setOwnerRights(const std::vector<int>& rights) const {
  reg_.execute("Update VeskConfig Set OwnerRights = '" + switchedOn(rights, 21) + "'");
}

void DeskTest::own(const std::string& documentId, const std::string& userId) const {
  reg_.execute("Insert Into Owners (DocumentID, UserID) Values ('" + documentId + "', '" + userId +
               "')");
}

void DeskTest::expectRefused(std::int32_t number, const std::string& text,
                             const std::function<void()>& useCase) const {
  const auto before = RawRegister(reg_.path()).dump();
  const auto error = errorOf(useCase);
  ASSERT_TRUE(error) << "nothing said: " << text;
  EXPECT_EQ(error->number(), number);
  EXPECT_EQ(error->description(), text);
  EXPECT_EQ(RawRegister(reg_.path()).dump(), before) << "changed something: " << text;
}

void DeskTest::expectDenied(const std::string& right, const std::function<void()>& useCase) const {
  expectRefused(kPermission, "Permission denied: " + right, useCase);
}

void DeskTest::expectWrongInput(const std::string& text,
                                const std::function<void()>& useCase) const {
  expectRefused(kInvalidCall, text, useCase);
  EXPECT_THROW(useCase(), desk::WrongInput) << text;
}

}  // namespace kv::test
