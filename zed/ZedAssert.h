// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// The access library's assertions. A failed assertion writes a trace line
// under the access library's module bit and hands the message to the
// assertion handler. The default handler throws TException with the message,
// so that callers that catch the library's exceptions handle it; a host may
// install its own (KEL traces the message and lets the form go on), and then
// the code after a failed ZEDAssertM runs on.

#include "zed/ZedExport.h"

#include <string>

/// Trace lines of the access library itself carry this module bit.
inline constexpr unsigned int ZED_TRACE_MODULE = 0x10000;

/// Called with the place and the message of a failed assertion.
using ZEDAssertHandler = void (*)(const char* file, int line, const std::string& message);

/// Installs a handler (null: the default) and returns the one it replaces.
ZED_EXPORT ZEDAssertHandler ZEDSetAssertHandler(ZEDAssertHandler handler);
ZED_EXPORT ZEDAssertHandler ZEDGetAssertHandler();

/// Traces and calls the handler; returns when the handler does.
ZED_EXPORT void ZEDAssertFailed(const char* file, int line, const std::string& message);

#define ZEDAssertM(condition, message)                                                                                 \
    do {                                                                                                               \
        if (!(condition))                                                                                              \
            ZEDAssertFailed(__FILE__, __LINE__, (message));                                                            \
    } while (0)

/// Nothing can go on without the memory, whatever the handler: traces, calls
/// the handler, then throws TException.
[[noreturn]] ZED_EXPORT void ZEDAllocationFailed(const char* file, int line);

/// For the rare allocation that can answer null (nothrow new, C allocators).
template <typename T>
T* ZEDAssertAllocation(T* pointer)
{
    if (!pointer)
        ZEDAllocationFailed(__FILE__, __LINE__);
    return pointer;
}
