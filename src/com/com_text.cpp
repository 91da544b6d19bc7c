#include "com/com_text.h"

#include <new>

#include "common/error.h"

namespace kv::com {

std::string fromBstr(BSTR text) {
  const auto length = static_cast<int>(SysStringLen(text));
  if (length == 0) return {};
  const int bytes = WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, text, length, nullptr, 0,
                                        nullptr, nullptr);
  if (bytes <= 0) raise(kInvalidCall);
  std::string out(static_cast<std::size_t>(bytes), '\0');
  WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, text, length, out.data(), bytes, nullptr,
                      nullptr);
  return out;
}

std::wstring toWide(std::string_view text) {
  if (text.empty()) return {};
  const auto bytes = static_cast<int>(text.size());
  const int length = MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, nullptr, 0);
  std::wstring out(static_cast<std::size_t>(length), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, out.data(), length);
  return out;
}

BSTR toBstr(std::string_view text) {
  const std::wstring wide = toWide(text);
  BSTR out = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
  if (out == nullptr) throw std::bad_alloc();
  return out;
}

}  // namespace kv::com
