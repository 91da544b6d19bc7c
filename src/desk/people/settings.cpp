// SPDX-License-Identifier: Apache-2.0
#include "desk/people/settings.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "classes/rights/rights.h"
#include "common/text.h"
#include "desk/refusal.h"

namespace kv::desk {

namespace {

std::string_view userOptionText(std::int16_t number) noexcept {
  switch (number) {
    case uoUseNewDocumentWizard: return "Be led through a new document";
    case uoUseNewManualWizard: return "Be led through a new manual";
    case uoUseNewUserWizard: return "Be led through a new user";
    case uoUseNewRevisionWizard: return "Be led through a new revision";
    case uoVerifyDelete: return "Be asked before something is deleted";
    case uoPromptToAddNewKeyword: return "Be asked whether to add a new keyword";
    case uoAutoAddNewKeyword: return "Add new keywords unasked";
    default: return {};
  }
}

std::string_view applicationOptionText(std::int16_t number) noexcept {
  switch (number) {
    case aoShowVirtual: return "Show virtual copies";
    case aoShowBoth: return "Show both kinds of copies";
    case aoAllowNewKeywords: return "Allow new keywords";
    case aoNotifyVirtualUsers: return "Tell holders of virtual copies of a new revision";
    case aoAllowUncontolledDocuments: return "Allow uncontrolled documents";
    case aoNotifyHCUsers: return "Tell holders of hard copies of a new revision";
    case aoNotifyApprovalReq: return "Tell approvers that their approval is required";
    case aoSendActions: return "Send actions";
    case aoUserDecision: return "Let users decide whether actions are sent";
    case aoApproveInOrder: return "Approve in the order of the approval list";
    case aoDocSortByNum: return "Sort documents by number";
    default: return {};
  }
}

// More than the last number of every kind.
constexpr std::int16_t kBeyond = kLastUserRight + 1;

std::optional<std::int16_t> numberIn(std::string_view text) {
  text = trimmed(text);
  std::int16_t number = 0;
  const auto [read, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || read != text.data() + text.size()) return std::nullopt;
  return number;
}

}  // namespace

std::string_view kindText(SettingKind kind) noexcept {
  switch (kind) {
    case SettingKind::UserRight: return "user right";
    case SettingKind::OwnerRight: return "owner right";
    case SettingKind::UserOption: return "user option";
    case SettingKind::ApplicationOption: return "application option";
  }
  return {};
}

std::string settingText(SettingKind kind, std::int16_t number) {
  switch (kind) {
    case SettingKind::UserRight:
      if (number > kLastUserRight || number == General || number == Personal) return {};
      return std::string(userRightText(number));
    case SettingKind::OwnerRight: return std::string(ownerRightText(number));
    case SettingKind::UserOption: return std::string(userOptionText(number));
    case SettingKind::ApplicationOption: return std::string(applicationOptionText(number));
  }
  return {};
}

Settings settingsOf(SettingKind kind) {
  Settings numbers;
  for (std::int16_t n = 1; n < kBeyond; ++n)
    if (!settingText(kind, n).empty()) numbers.push_back(n);
  return numbers;
}

Settings readSettings(SettingKind kind, const std::string& list) {
  Settings numbers;
  const std::string_view all = list;
  for (std::size_t from = 0; from <= all.size();) {
    const std::size_t comma = std::min(all.find(',', from), all.size());
    const std::string_view part = all.substr(from, comma - from);
    from = comma + 1;
    const std::size_t dash = part.find('-');
    const bool range = dash != std::string_view::npos;
    const auto first = numberIn(part.substr(0, dash));
    const auto last = range ? numberIn(part.substr(dash + 1)) : first;
    const std::size_t before = numbers.size();
    if (first && last)
      for (const auto number : settingsOf(kind))
        if (number >= *first && number <= *last) numbers.push_back(number);
    if (numbers.size() == before)
      throw WrongInput("there is no " + std::string(kindText(kind)) + " '" + std::string(part) +
                       "'");
  }
  return numbers;
}

std::string withSettings(std::string text, const Settings& places, bool on) {
  for (const auto place : places) {
    const auto at = static_cast<std::size_t>(place) - 1;
    if (text.size() <= at) text.resize(at + 1, '0');
    text[at] = on ? '1' : '0';
  }
  return text;
}

}  // namespace kv::desk
