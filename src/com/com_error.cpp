// SPDX-License-Identifier: Apache-2.0
#include "com/com_error.h"

#include <new>
#include <string_view>

#include "com/com_text.h"
#include "common/error.h"

namespace kv::com {

namespace {

constexpr std::int32_t kPlainNumbers = 0x10000;  // numbers below are without a facility
constexpr std::uint32_t kHostFacility = 0x800A0000;

HRESULT resultOf(std::int32_t number) noexcept {
  if (number > 0 && number < kPlainNumbers)
    return static_cast<HRESULT>(kHostFacility | static_cast<std::uint32_t>(number));
  return number;
}

void report(std::string_view source, std::string_view description) {
  ICreateErrorInfo* create = nullptr;
  if (FAILED(CreateErrorInfo(&create))) return;
  create->SetSource(wideText(source).data());
  create->SetDescription(wideText(description).data());
  IErrorInfo* info = nullptr;
  if (SUCCEEDED(create->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(&info)))) {
    SetErrorInfo(0, info);
    info->Release();
  }
  create->Release();
}

}  // namespace

HRESULT reportException() noexcept {
  try {
    try {
      throw;
    } catch (const Error& error) {
      report(error.source(), error.description());
      const HRESULT result = resultOf(error.number());
      return FAILED(result) ? result : E_FAIL;
    } catch (const NullPointer&) {
      return E_POINTER;
    } catch (const std::bad_alloc&) {
      return E_OUTOFMEMORY;
    } catch (const std::exception& error) {
      report("KvVesk", error.what());
      return E_FAIL;
    } catch (...) {
      return E_FAIL;
    }
  } catch (...) {  // no memory for the report
    return E_OUTOFMEMORY;
  }
}

bool takeErrorInfo(HRESULT number, EXCEPINFO& out) noexcept {
  IErrorInfo* info = nullptr;
  if (GetErrorInfo(0, &info) != S_OK) return false;
  out = EXCEPINFO{};
  out.scode = number;
  info->GetSource(&out.bstrSource);
  info->GetDescription(&out.bstrDescription);
  info->Release();
  return true;
}

}  // namespace kv::com
