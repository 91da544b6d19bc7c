// SPDX-License-Identifier: Apache-2.0
#include "desk/people/document_people.h"

#include <algorithm>

#include "common/convert.h"
#include "common/text.h"
#include "desk/answer_set.h"
#include "desk/people/user_lookup.h"

namespace kv::desk {

std::vector<std::string> membersIn(const Ref<Recordset>& list) {
  std::vector<std::string> ids;
  for (; !list->Eof(); list->MoveNext()) ids.push_back(joinText(list->Fields("UserID")->Value()));
  return ids;
}

std::string findMember(const Session& session, const std::vector<std::string>& members,
                       const std::string& user) {
  const auto found = std::find_if(members.begin(), members.end(), [&](const std::string& member) {
    return equalNoCase(member, user);
  });
  return found == members.end() ? findUser(session.database(), user) : *found;
}

Ref<Recordset> namedMembers(const Session& session, const std::vector<std::string>& members) {
  AnswerSet answer(
      {{"Place", kTypeInteger}, {"UserID", kTypeVarWChar}, {"UserName", kTypeVarWChar}});
  std::int32_t place = 0;
  for (const auto& user : members)
    answer.add({++place, user, session->User()->getUserName(doubledQuotes(user))});
  return answer.take();
}

}  // namespace kv::desk
