#pragma once

// The access library's assertions. A failed assertion writes a trace line
// under the access library's module bit and throws TException with the
// message, so that callers that catch the library's exceptions handle it.

#include "zed/ZedExport.h"

#include <string>

// Trace lines of the access library itself carry this module bit.
inline constexpr unsigned int ZED_TRACE_MODULE = 0x10000;

[[noreturn]] ZED_EXPORT void ZEDAssertFailed(const char* file, int line, const std::string& message);

#define ZEDAssertM(condition, message)                              \
    do {                                                            \
        if (!(condition))                                           \
            ZEDAssertFailed(__FILE__, __LINE__, (message));         \
    } while (0)

// For the rare allocation that can answer null (nothrow new, C allocators).
template <typename T>
T* ZEDAssertAllocation(T* pointer)
{
    if (!pointer)
        ZEDAssertFailed(__FILE__, __LINE__, "allocation failed");
    return pointer;
}
