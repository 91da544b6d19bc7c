// SPDX-License-Identifier: Apache-2.0
#include "desk/revisions/sent_actions.h"

#include "common/convert.h"
#include "common/text.h"
#include "data/table_value.h"

namespace kv::desk {

SentActions::SentActions(const Session& session, std::string documentId, std::int32_t revision)
    : session_(session), documentId_(std::move(documentId)), revision_(revision) {
  const Variant last = openOwn(session.database(), "Select Max(ActionID) From Actions", kReadOnly)
                           ->Fields(0)
                           ->Value();
  last_ = last.isNull() ? "0" : joinText(last);
}

Ref<Recordset> SentActions::rows() const {
  const std::string sender = joinText(session_->DataServer()->Config()->Value("DBID"));
  // Of what they are about, some say the document and some the revision.
  return openOwn(
      session_.database(),
      "Select ActionID, AssigneeID, Assignee, Subject, Description, DateDue From Actions "
      "Where ActionID > " +
          last_ + " and ReferenceID " +
          (sender.empty() ? "Is Null" : "= '" + doubledQuotes(sender) + "'") +
          " and (Reference = '" + doubledQuotes(documentId_) + "' or Reference = '" +
          std::to_string(revision_) + "') Order By ActionID",
      kReadOnly);
}

}  // namespace kv::desk
