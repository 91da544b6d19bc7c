// SPDX-License-Identifier: Apache-2.0
#include "desk/people/view_workgroups.h"

#include "classes/rights/rights.h"
#include "data/table_value.h"
#include "desk/answer_set.h"
#include "desk/people/user_lookup.h"
#include "desk/people/workgroup.h"

namespace kv::desk {

namespace {

Ref<Recordset> members(const Session& session, std::int32_t workgroup) {
  const UserNames names(session.database());
  AnswerSet answer({{"UserID", kTypeVarWChar}, {"UserName", kTypeVarWChar}});
  const auto ids =
      openOwn(session.database(),
              "Select UserID From VeskProfiles Where GroupID = " + std::to_string(workgroup) +
                  (workgroup == kViewOnlyUsers ? " or IsNull(GroupID)" : ""),
              kReadOnly);
  for (; !ids->Eof(); ids->MoveNext()) {
    const Variant user = ids->Fields(0)->Value();
    answer.add({user, names.of(user)});
  }
  answer.rows().Sort("UserName, UserID");
  return answer.take();
}

Ref<Recordset> all(const Session& session) {
  AnswerSet answer({{"GroupID", kTypeInteger}, {"GroupTitle", kTypeVarWChar}});
  for (const auto fixed : {kSuperUsers, kViewOnlyUsers})
    answer.add({fixed, workgroupTitle(session, fixed)});
  const auto groups = openOwn(session.database(),
                              "Select GroupID, GroupTitle From Groups Order By GroupID", kReadOnly);
  for (; !groups->Eof(); groups->MoveNext())
    answer.add({groups->Fields(0)->Value(), groups->Fields(1)->Value()});
  return answer.take();
}

}  // namespace

Ref<Recordset> listWorkgroups(const Session& session, const std::optional<std::string>& membersOf) {
  session.requireRight(urVIEWUSERLIST);
  return membersOf ? members(session, findWorkgroup(session, *membersOf)) : all(session);
}

}  // namespace kv::desk
