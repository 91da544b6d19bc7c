// SPDX-License-Identifier: Apache-2.0
// The members of an interface as the type library describes them, in the form that calls need.
#pragma once

#include <vector>

#include "com/com_value.h"
#include "com/platform.h"

namespace kv::com {

struct MemberParameter {
  VARTYPE type = VT_EMPTY;   // of the value; VT_DISPATCH for every interface
  bool byReference = false;  // a pointer to the value is passed
  bool optional = false;
  VARIANT preset{};  // what stands for it when left out; VT_EMPTY for zero, "" or nothing
  GUID interfaceId{};
};

struct Member {
  MEMBERID id = 0;
  INVOKEKIND kind = INVOKE_FUNC;
  ULONG_PTR slot = 0;  // its offset in the table of virtual functions
  std::vector<MemberParameter> parameters;
  VARTYPE result = VT_EMPTY;  // VT_EMPTY for none
};

class Members {
 public:
  // Read once for each interface and kept. Throws the HRESULT of the platform, as a Failure, when
  // the type library cannot be read.
  [[nodiscard]] static const Members& of(REFIID interfaceId);

  struct Failure {
    HRESULT result;
  };

  // Nothing when there is none with this id that can be called in one of these ways.
  [[nodiscard]] const Member* find(DISPID id, WORD kinds) const noexcept;
  [[nodiscard]] ITypeInfo* info() const noexcept { return info_; }

 private:
  void read(REFIID interfaceId);

  ITypeInfo* info_ = nullptr;  // kept until the DLL goes
  std::vector<Member> members_;
};

}  // namespace kv::com
