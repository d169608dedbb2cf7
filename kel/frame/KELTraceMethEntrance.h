// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

class TTraceStream;

/// Writes "Entering" and "Leaving" lines around one call of a traced method,
/// and a "LEAVING ABNORMALLY" line when the call ends without Leave, which is
/// what happens when an exception passes through it. Lives on that call's
/// stack.
///
/// It also keeps the library's one copy of the application's trace mask: read
/// from the access library the first time anything asks, and never again, so
/// that a disabled trace site costs one test of a global.
class KEL_EXPORT KELTraceMethEntrance {
public:
    explicit KELTraceMethEntrance(unsigned int moduleBit);
    KELTraceMethEntrance(const char* name, unsigned int moduleBit, const char* method);
    KELTraceMethEntrance(const char* name, unsigned int moduleBit, const void* object, const char* method);
    KELTraceMethEntrance(const KELTraceMethEntrance&) = delete;
    KELTraceMethEntrance& operator=(const KELTraceMethEntrance&) = delete;
    ~KELTraceMethEntrance();

    void Enter(TTraceStream& stream, const char* name, const char* method);
    void Enter(TTraceStream& stream, const char* name, const void* object, const char* method);
    void Leave();

    /// True when the mask shares any bit with the given bits.
    static bool Tracing(unsigned int bits);

    /// True when the mask holds every one of the given bits. Before the first
    /// read the cached mask is all ones, so the one test passes and the slow
    /// path reads the real mask.
    static bool IsOn(unsigned int bits) { return (m_appMask & bits) == bits && Confirm(bits); }

    /// Tests only: forget the cached mask so that the next trace site reads it.
    static void ForgetMaskForTesting();

protected:
    void Enter0(TTraceStream& stream, const char* name, const char* method);

private:
    static bool Confirm(unsigned int bits);
    static void ReadMask();
    void WriteLine(const char* text);

    bool m_bHasObject = false;
    const char* m_pszName = nullptr;
    unsigned int m_moduleBit;
    const void* m_pObject = nullptr;
    const char* m_pszMethod = nullptr;

    static unsigned int m_appMask;
    static bool m_bAppMaskRead;
};
