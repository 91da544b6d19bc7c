// SPDX-License-Identifier: Apache-2.0
#include "com/creatable.h"

#include <array>

#include "classes/documents/document.h"
#include "classes/manuals/manual.h"
#include "classes/queries/document_query.h"
#include "classes/queries/manual_query.h"
#include "classes/queries/user_query.h"
#include "classes/revisions/revision.h"
#include "classes/session/vesk.h"
#include "classes/users/user.h"
#include "com/blank_query.h"
#include "com/objects.h"
#include "recordset/recordset.h"

namespace kv::com {

namespace {

template <class T>
IUnknown* make() {
  return wrap(makeRef<T>());
}
template <>
IUnknown* make<clsVesk>() {
  return wrap(clsVesk::create());
}
template <>
IUnknown* make<clsQuery>() {
  return wrap(Ref<clsQuery>(makeRef<BlankQuery>()));
}
template <>
IUnknown* make<Recordset>() {
  return wrap(Recordset::create());
}

template <class T>
Creatable creatable(const wchar_t* name, const wchar_t* description) {
  return {&Face<T>::clsid(), name, description, make<T>};
}

}  // namespace

std::span<const Creatable> creatableClasses() noexcept {
  static const std::array kClasses = {
      creatable<clsVesk>(L"clsVesk", L"KvVesk Session"),
      creatable<clsVeskDocument>(L"clsVeskDocument", L"KvVesk Documents"),
      creatable<clsVeskManual>(L"clsVeskManual", L"KvVesk Manuals"),
      creatable<clsVeskRevision>(L"clsVeskRevision", L"KvVesk Revisions"),
      creatable<clsVeskUser>(L"clsVeskUser", L"KvVesk Users"),
      creatable<clsQuery>(L"clsQuery", L"KvVesk Query"),
      creatable<clsDocumentQuery>(L"clsDocumentQuery", L"KvVesk Document Query"),
      creatable<clsManualQuery>(L"clsManualQuery", L"KvVesk Manual Query"),
      creatable<clsUserQuery>(L"clsUserQuery", L"KvVesk User Query"),
      creatable<kvDataServer>(L"kvDataServer", L"KvVesk Data Server"),
      creatable<kvProfile>(L"kvProfile", L"KvVesk Profile"),
      creatable<kvUser>(L"kvUser", L"KvVesk User Component"),
      creatable<Recordset>(L"kvRecordset", L"KvVesk Record Set"),
  };
  return kClasses;
}

}  // namespace kv::com
