// SPDX-License-Identifier: Apache-2.0
// Which interface, and which class of the type library, stands for which class of the library.
#pragma once

#include "com/platform.h"
// Made from kvvesk.idl; needs platform.h.
#include "com/kvvesk_idl.h"
#include "common/variant.h"
#include "data/data_server.h"
#include "user/main_user.h"

namespace kv {
class clsVesk;
class clsVeskDocument;
class clsVeskManual;
class clsVeskRevision;
class clsVeskUser;
class clsQuery;
class clsDocumentQuery;
class clsManualQuery;
class clsUserQuery;
}  // namespace kv

namespace kv::com {

template <class Interface, class Class>
struct FaceIs {
  using interface_type = Interface;
  [[nodiscard]] static const GUID& iid() { return __uuidof(Interface); }
  [[nodiscard]] static const GUID& clsid() { return __uuidof(Class); }
};

template <class T>
struct Face;
template <>
struct Face<clsVesk> : FaceIs<_clsVesk, ::clsVesk> {};
template <>
struct Face<clsVeskDocument> : FaceIs<_clsVeskDocument, ::clsVeskDocument> {};
template <>
struct Face<clsVeskManual> : FaceIs<_clsVeskManual, ::clsVeskManual> {};
template <>
struct Face<clsVeskRevision> : FaceIs<_clsVeskRevision, ::clsVeskRevision> {};
template <>
struct Face<clsVeskUser> : FaceIs<_clsVeskUser, ::clsVeskUser> {};
template <>
struct Face<clsQuery> : FaceIs<_clsQuery, ::clsQuery> {};
template <>
struct Face<clsDocumentQuery> : FaceIs<_clsDocumentQuery, ::clsDocumentQuery> {};
template <>
struct Face<clsManualQuery> : FaceIs<_clsManualQuery, ::clsManualQuery> {};
template <>
struct Face<clsUserQuery> : FaceIs<_clsUserQuery, ::clsUserQuery> {};
template <>
struct Face<kvDataServer> : FaceIs<_kvDataServer, ::kvDataServer> {};
template <>
struct Face<kvConfig> : FaceIs<_kvConfig, ::kvConfig> {};
template <>
struct Face<kvConnection> : FaceIs<_kvConnection, ::kvConnection> {};
template <>
struct Face<kvProfile> : FaceIs<_kvProfile, ::kvProfile> {};
template <>
struct Face<kvQueries> : FaceIs<_kvQueries, ::kvQueries> {};
template <>
struct Face<kvUser> : FaceIs<_kvUser, ::kvUser> {};
template <>
struct Face<kvSender> : FaceIs<_kvSender, ::kvSender> {};
template <>
struct Face<Recordset> : FaceIs<_kvRecordset, ::kvRecordset> {};
template <>
struct Face<Fields> : FaceIs<_kvFields, ::kvFields> {};
template <>
struct Face<Field> : FaceIs<_kvField, ::kvField> {};

template <class T>
using InterfaceOf = typename Face<T>::interface_type;

}  // namespace kv::com
