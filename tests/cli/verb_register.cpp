// SPDX-License-Identifier: Apache-2.0
#include "cli/verb_register.h"

#include <sstream>

#include "support/register_dump.h"

namespace kv::test {

VerbRegister::VerbRegister() {
  const std::string nothing(255, '0');
  reg_.addUser(901, "Anna", "secret", true);
  reg_.addUser(902, "Bert", "secret", false, nothing);
  reg_.addUser(903, "Carla", "secret", false, nothing);
  for (const char* sql :
       {"Insert Into Documents (ID, DocumentID, DocumentTitle, DocumentNumber, RevisionLevel, "
        "EffectiveDate, Controlled, CurrentRevID) Values (901, 'D1', 'Plan''s end', 'P-1', 'A', "
        "#3/9/2001#, True, 901)",
        "Insert Into Documents (ID, DocumentID, DocumentTitle, DocumentNumber, RevisionLevel, "
        "EffectiveDate, Controlled, SecurityLevel, CurrentRevID) Values (902, 'D2', 'Budget', "
        "'P-2', '1', #4/1/2002#, True, True, 903)",
        "Insert Into Documents (ID, DocumentID, DocumentTitle, DocumentNumber, RevisionLevel, "
        "Controlled, CurrentRevID) Values (903, 'D3', 'Sketch', 'P-3', 'Uncontrolled', False, 0)",
        "Insert Into Revisions (RevisionID, DocumentID, RevisionLevel, EffectiveDate, "
        "ResponsibleID, RoutingStatus, RevisionStatus) Values (901, 'D1', 'A', #3/9/2001#, "
        "'User903', 0, 1)",
        "Insert Into Revisions (RevisionID, DocumentID, RevisionLevel, ChangeDescription, "
        "ResponsibleID, RoutingStatus, RevisionStatus) Values (902, 'D1', 'B', 'Shorter', "
        "'User902', 0, 2)",
        "Insert Into Revisions (RevisionID, DocumentID, RevisionLevel, EffectiveDate, "
        "ResponsibleID, RoutingStatus, RevisionStatus) Values (903, 'D2', '1', #4/1/2002#, "
        "'User903', 0, 1)",
        "Insert Into Revisions (RevisionID, DocumentID, RevisionLevel, EffectiveDate, "
        "ResponsibleID, RoutingStatus, RevisionStatus) Values (904, 'D3', 'C', #5/2/2003#, "
        "'User903', 0, 1)",
        "Insert Into DocumentQuerys (QueryID, QueryName) Values (1, 'All documents')",
        "Insert Into DocumentQuerys (QueryID, QueryName, Field1, Field1Key) Values (2, 'Plans', "
        "'plan', 1)"})
    execute(sql);
}

void VerbRegister::setRights(const std::string& userId, const std::vector<int>& rights) const {
  std::string text(255, '0');
  for (const int right : rights) text[static_cast<std::size_t>(right) - 1] = '1';
  execute("Update VeskProfiles Set Rights = '" + text + "' Where UserID = '" + userId + "'");
}

void VerbRegister::setOwnerRights(const std::vector<int>& rights) const {
  std::string text(21, '0');
  for (const int right : rights) text[static_cast<std::size_t>(right) - 1] = '1';
  execute("Update VeskConfig Set OwnerRights = '" + text + "'");
}

void VerbRegister::own(const std::string& documentId, const std::string& userId) const {
  execute("Insert Into Owners (DocumentID, UserID) Values ('" + documentId + "', '" + userId +
          "')");
}

Outcome VerbRegister::as(const std::string& user, const std::string& verb,
                         const std::vector<std::string>& words) const {
  std::vector<std::string> arguments;
  std::istringstream parts(verb);
  for (std::string part; parts >> part;) arguments.push_back(part);
  arguments.insert(arguments.end(), {"-u", user, path()});
  arguments.insert(arguments.end(), words.begin(), words.end());
  return run(std::move(arguments));
}

std::string VerbRegister::done(const std::string& verb,
                               const std::vector<std::string>& words) const {
  const auto outcome = as("Anna", verb, words);
  EXPECT_EQ(outcome.code, 0) << verb;
  EXPECT_EQ(outcome.err, "") << verb;
  return outcome.out;
}

std::vector<std::string> VerbRegister::everything() const { return RawRegister(path()).dump(); }

std::string VerbTest::refused(const std::string& user, const std::string& verb,
                              const std::vector<std::string>& words, int code) const {
  const auto before = reg_.everything();
  const auto outcome = reg_.as(user, verb, words);
  EXPECT_EQ(outcome.code, code) << verb;
  EXPECT_EQ(outcome.out, "") << verb;
  EXPECT_EQ(reg_.everything(), before) << verb << " changed something";
  return outcome.err;
}

}  // namespace kv::test
