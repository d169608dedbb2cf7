// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// The one way the library writes a trace line:
//
//     KEL_TRACE(KEL_TRACE_PBLM, "KELSection", this) << "ISection::Save " << name;
//
// gives "KEL PBLM: KELSection:<line> this=<object> ISection::Save <name>".
// A disabled site costs one test of the cached mask; the line's parts are not
// even evaluated.

#include "kel/KELExport.h"
#include "kel/frame/KELTraceMethEntrance.h"
#include "kel/frame/KELTraceStream.h"

/// The library's module bit and the kinds of line.
inline constexpr unsigned int KEL_TRACE_MODULE = 1024;
inline constexpr unsigned int KEL_TRACE_PBLM = 1;  // errors and unexpected states
inline constexpr unsigned int KEL_TRACE_EXCP = 2;  // creation failures before a throw
inline constexpr unsigned int KEL_TRACE_INFO = 4;  // progress
inline constexpr unsigned int KEL_TRACE_FUNC = 8;  // method entrance

/// One trace line under construction; ends the line when the statement ends.
class KEL_EXPORT KELTraceSite {
public:
    static bool Enabled(unsigned int kind) { return KELTraceMethEntrance::IsOn(KEL_TRACE_MODULE | kind); }

    KELTraceSite(unsigned int kind, const char* source, int line, const void* object);
    KELTraceSite(const KELTraceSite&) = delete;
    KELTraceSite& operator=(const KELTraceSite&) = delete;
    ~KELTraceSite();

    TTraceStream& Stream() { return m_stream; }

private:
    KELTraceStream m_stream;
};

#define KEL_TRACE(kind, source, object)                                                                                \
    if (!KELTraceSite::Enabled(kind)) {                                                                                \
    } else                                                                                                             \
        KELTraceSite((kind), (source), __LINE__, (object)).Stream()

/// Whether a part an operation needs is there. When it is not, the problem
/// line "KEL : <where>, <part> must be valid !" is traced, as written at the
/// caller's line. where and part are string literals.
#define KEL_NEEDS(present, source, where, part)                                                                        \
    KELTraceNeeds((present) != nullptr, (source), __LINE__, this, "KEL : " where ", " part " must be valid !")

inline bool KELTraceNeeds(bool present, const char* source, int line, const void* object, const char* problem)
{
    if (!present && KELTraceSite::Enabled(KEL_TRACE_PBLM))
        KELTraceSite(KEL_TRACE_PBLM, source, line, object).Stream() << problem;
    return present;
}
