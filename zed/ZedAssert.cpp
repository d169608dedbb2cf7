#include "zed/ZedAssert.h"

#include "zed/TException.h"
#include "zed/trace/TTraceStream.h"

void ZEDAssertFailed(const char* file, int line, const std::string& message)
{
    TTraceStream(ZED_TRACE_MODULE | 1) << "ZED PBLM: " << file << ':' << line << " assertion failed: " << message
                                       << endl;
    throw TException(message);
}
