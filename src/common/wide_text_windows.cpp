// SPDX-License-Identifier: Apache-2.0
#include <windows.h>

#include "common/wide_text.h"

namespace kv {

// The system counts in int and takes no empty text.

std::optional<std::string> fromWide(std::wstring_view text) {
  if (text.empty()) return std::string();
  const int size = static_cast<int>(text.size());
  const int needed = WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, text.data(), size, nullptr,
                                         0, nullptr, nullptr);
  if (needed == 0) return {};
  std::string out(static_cast<std::size_t>(needed), '\0');
  WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, text.data(), size, out.data(), needed, nullptr,
                      nullptr);
  return out;
}

std::optional<std::wstring> toWide(std::string_view text) {
  if (text.empty()) return std::wstring();
  const int size = static_cast<int>(text.size());
  const int needed =
      MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), size, nullptr, 0);
  if (needed == 0) return {};
  std::wstring out(static_cast<std::size_t>(needed), L'\0');
  MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), size, out.data(), needed);
  return out;
}

}  // namespace kv
