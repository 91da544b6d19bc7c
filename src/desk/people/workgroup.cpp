// SPDX-License-Identifier: Apache-2.0
#include "desk/people/workgroup.h"

#include <array>
#include <utility>

#include "common/convert.h"
#include "common/error.h"
#include "common/text.h"
#include "common/whole_number.h"
#include "data/table_value.h"
#include "desk/refusal.h"

namespace kv::desk {

namespace {

// Two workgroups have no row.
constexpr auto kFixed = std::to_array<std::pair<std::int32_t, const char*>>(
    {{kSuperUsers, "Super Users"}, {kViewOnlyUsers, "View Only Users"}});

Ref<Recordset> groupsWhere(const Session& session, const std::string& condition) {
  return openOwn(session.database(), "Select GroupID, GroupTitle From Groups Where " + condition,
                 kReadOnly);
}

}  // namespace

std::int32_t findWorkgroup(const Session& session, const std::string& workgroup) {
  const auto given = wholeNumber(workgroup);
  for (const auto& [number, title] : kFixed)
    if (given == number || equalNoCase(workgroup, title)) return number;
  if (given && groupsWhere(session, "GroupID = " + std::to_string(*given))->RecordCount() > 0)
    return *given;
  const auto titled = groupsWhere(session, "GroupTitle = '" + doubledQuotes(workgroup) + "'");
  if (titled->RecordCount() == 1) return toInt32(titled->Fields("GroupID")->Value());
  refuse(titled->RecordCount() == 0 ? "There is no workgroup '" + workgroup + "'."
                                    : "Several workgroups have the title '" + workgroup +
                                          "'; give the workgroup's number.");
}

std::string workgroupTitle(const Session& session, std::int32_t workgroup) {
  for (const auto& [number, title] : kFixed)
    if (workgroup == number) return title;
  return joinText(tableValue(session.database(), "Groups", "GroupTitle",
                             "GroupID = " + std::to_string(workgroup)));
}

}  // namespace kv::desk
