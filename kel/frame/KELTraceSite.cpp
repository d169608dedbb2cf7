// SPDX-License-Identifier: BSD-3-Clause
#include "kel/frame/KELTrace.h"

namespace {

const char* KindWord(unsigned int kind)
{
    switch (kind) {
    case KEL_TRACE_PBLM: return "PBLM";
    case KEL_TRACE_EXCP: return "EXCP";
    case KEL_TRACE_INFO: return "INFO";
    case KEL_TRACE_FUNC: return "FUNC";
    default: return "????";
    }
}

}  // namespace

KELTraceSite::KELTraceSite(unsigned int kind, const char* source, int line, const void* object)
    : m_stream(KEL_TRACE_MODULE, kind)
{
    m_stream << "KEL " << KindWord(kind) << ": " << source << ':' << line << " this=" << object << ' ';
}

KELTraceSite::~KELTraceSite()
{
    try {
        m_stream << endl;
    } catch (...) {
        // A trace line that cannot be written is lost; the traced code goes on.
    }
}
