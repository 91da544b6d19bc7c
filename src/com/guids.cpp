// SPDX-License-Identifier: Apache-2.0
// The definitions of what the other files know as GUIDs of the type library.
#include "com/platform.h"
// After platform.h, before what it turns into definitions.
#include <initguid.h>
// After both.
#include "com/kvvesk_idl.h"
