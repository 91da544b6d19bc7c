// SPDX-License-Identifier: Apache-2.0
// What the platform exports and its headers here do not declare.
#pragma once

#include "com/platform.h"

extern "C" {
// Names of the platform.
HRESULT WINAPI RegisterTypeLibForUser(ITypeLib* library, OLECHAR* path, OLECHAR* help);
HRESULT WINAPI UnRegisterTypeLibForUser(REFGUID id, WORD major, WORD minor, LCID language,
                                        SYSKIND kind);
}
