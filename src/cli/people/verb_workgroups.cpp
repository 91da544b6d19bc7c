#include <iostream>

#include "cli/answers/answer_set.h"
#include "cli/answers/output.h"
#include "cli/people/user_lookup.h"
#include "cli/people/workgroup.h"
#include "cli/program/given_options.h"
#include "cli/program/verbs.h"
#include "kvdata/table_value.h"
#include "rights/rights.h"

namespace kv::cli {

namespace {

AnswerSet membersOf(const Session& session, std::int32_t workgroup) {
  const UserNames names(session.database());
  AnswerSet answer({{"UserID", kTypeVarWChar}, {"UserName", kTypeVarWChar}});
  const auto members =
      openOwn(session.database(),
              "Select UserID From VeskProfiles Where GroupID = " + std::to_string(workgroup) +
                  (workgroup == kViewOnlyUsers ? " or IsNull(GroupID)" : ""),
              kReadOnly);
  for (; !members->Eof(); members->MoveNext()) {
    const Variant user = members->Fields(0)->Value();
    answer.add({user, names.of(user)});
  }
  answer.rows().Sort("UserName, UserID");
  return answer;
}

AnswerSet all(const Session& session) {
  AnswerSet answer({{"GroupID", kTypeInteger}, {"GroupTitle", kTypeVarWChar}});
  for (const auto fixed : {kSuperUsers, kViewOnlyUsers})
    answer.add({fixed, workgroupTitle(session, fixed)});
  const auto groups = openOwn(session.database(),
                              "Select GroupID, GroupTitle From Groups Order By GroupID", kReadOnly);
  for (; !groups->Eof(); groups->MoveNext())
    answer.add({groups->Fields(0)->Value(), groups->Fields(1)->Value()});
  return answer;
}

int list(const Options& options, const std::optional<std::string>& members) {
  const Session session(options);
  session.requireRight(urVIEWUSERLIST);
  const AnswerSet answer =
      members ? membersOf(session, findWorkgroup(session, *members)) : all(session);
  writeRows(std::cout, answer.rows(), options.format);
  return kDone;
}

struct List : RegisterVerb {
  std::optional<std::string> members;

  void describe(Command& verb) {
    addText(verb, "--members", members, "List the members of this workgroup, by number or title")
        ->typeName("GROUP");
  }
  [[nodiscard]] int run() const { return list(options, members); }
};

}  // namespace

void workgroupList(Command& verb) { declare<List>(verb); }

}  // namespace kv::cli
