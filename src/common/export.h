// SPDX-License-Identifier: Apache-2.0
// What a shared library shows: the build hides every name but those that carry this mark. Classes
// and functions that programs may use carry it; what stands in headers alone needs none.
#pragma once

// The component for Windows shows four functions, by a list of its own.
#ifdef _WIN32
#define KVVESK_API
#else
#define KVVESK_API [[gnu::visibility("default")]]
#endif
