// SPDX-License-Identifier: Apache-2.0
#include "recordset/edit.h"

#include <utility>

#include "recordset/pending.h"

namespace kv {

Edit::Edit(Ref<Recordset> rs) : rs_(std::move(rs)), position_(rs_->position_) {
  if (rs_->pending_) callers_ = std::make_unique<Recordset::Pending>(*rs_->pending_);
}

Edit::~Edit() {
  if (kept_ || !rs_->pending_) return;
  if (callers_)
    rs_->moveTo(position_);
  else if (rs_->pending_->adding)
    rs_->moveTo(rs_->pending_->left);
  rs_->pending_ = std::move(callers_);
}

}  // namespace kv
