// SPDX-License-Identifier: Apache-2.0
// The platform's headers, without what they define that gets in the way.
#pragma once

#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>
// Below: these need windows.h.
#include <oaidl.h>
#include <ocidl.h>
#include <oleauto.h>
