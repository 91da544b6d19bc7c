// SPDX-License-Identifier: Apache-2.0
#include "com/com_text.h"

#include <new>

#include "common/error.h"
#include "common/wide_text.h"

namespace kv::com {

std::string fromBstr(BSTR text) {
  if (text == nullptr) return {};
  auto out = fromWide({text, SysStringLen(text)});
  if (!out) raise(kInvalidCall);
  return *std::move(out);
}

std::wstring wideText(std::string_view text) {
  if (text.empty()) return {};
  const auto bytes = static_cast<int>(text.size());
  const int length = MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, nullptr, 0);
  std::wstring out(static_cast<std::size_t>(length), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, out.data(), length);
  return out;
}

BSTR toBstr(std::string_view text) {
  const std::wstring wide = wideText(text);
  BSTR out = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
  if (out == nullptr) throw std::bad_alloc();
  return out;
}

}  // namespace kv::com
