// SPDX-License-Identifier: BSD-3-Clause
#include "zed/ZedAssert.h"

#include "zed/TException.h"
#include "zed/trace/TTraceStream.h"

#include <atomic>

namespace {

[[noreturn]] void Throw(const char*, int, const std::string& message) { throw TException(message); }

std::atomic<ZEDAssertHandler> g_handler{nullptr};

}  // namespace

ZEDAssertHandler ZEDSetAssertHandler(ZEDAssertHandler handler) { return g_handler.exchange(handler); }

ZEDAssertHandler ZEDGetAssertHandler() { return g_handler.load(); }

void ZEDAssertFailed(const char* file, int line, const std::string& message)
{
    TTraceStream(ZED_TRACE_MODULE | 1) << "ZED PBLM: " << file << ':' << line << " assertion failed: " << message
                                       << endl;
    const ZEDAssertHandler handler = g_handler.load();
    (handler ? handler : &Throw)(file, line, message);
}

void ZEDAllocationFailed(const char* file, int line)
{
    ZEDAssertFailed(file, line, "allocation failed");
    throw TException("allocation failed");
}
