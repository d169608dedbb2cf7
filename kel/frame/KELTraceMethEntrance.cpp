// SPDX-License-Identifier: BSD-3-Clause
#include "kel/frame/KELTraceMethEntrance.h"

#include "kel/frame/KELTrace.h"
#include "zed/TApplication.h"
#include "zed/trace/TTraceProvider.h"

unsigned int KELTraceMethEntrance::m_appMask = ~0u;
bool KELTraceMethEntrance::m_bAppMaskRead = false;

void KELTraceMethEntrance::ReadMask()
{
    m_appMask = ZEDGetApplication()->GetTraceProvider()->GetMask();
    m_bAppMaskRead = true;
}

bool KELTraceMethEntrance::Confirm(unsigned int bits)
{
    if (!m_bAppMaskRead)
        ReadMask();
    return (m_appMask & bits) == bits;
}

bool KELTraceMethEntrance::Tracing(unsigned int bits)
{
    if (!m_bAppMaskRead)
        ReadMask();
    return (m_appMask & bits) != 0;
}

void KELTraceMethEntrance::ForgetMaskForTesting()
{
    m_appMask = ~0u;
    m_bAppMaskRead = false;
}

KELTraceMethEntrance::KELTraceMethEntrance(unsigned int moduleBit) : m_moduleBit(moduleBit) {}

KELTraceMethEntrance::KELTraceMethEntrance(const char* name, unsigned int moduleBit, const char* method)
    : m_pszName(name), m_moduleBit(moduleBit), m_pszMethod(method)
{
    if (IsOn(m_moduleBit | KEL_TRACE_FUNC)) {
        KELTraceStream stream(m_moduleBit, KEL_TRACE_FUNC);
        Enter(stream, name, method);
        stream << endl;
    }
}

KELTraceMethEntrance::KELTraceMethEntrance(const char* name, unsigned int moduleBit, const void* object,
                                           const char* method)
    : m_bHasObject(true), m_pszName(name), m_moduleBit(moduleBit), m_pObject(object), m_pszMethod(method)
{
    if (IsOn(m_moduleBit | KEL_TRACE_FUNC)) {
        KELTraceStream stream(m_moduleBit, KEL_TRACE_FUNC);
        Enter(stream, name, object, method);
        stream << endl;
    }
}

KELTraceMethEntrance::~KELTraceMethEntrance()
{
    if (m_pszMethod) {
        // Usually runs during unwinding: a trace fault must not end the process.
        try {
            WriteLine(": LEAVING ABNORMALLY ");
        } catch (...) {
        }
    }
}

void KELTraceMethEntrance::Enter(TTraceStream& stream, const char* name, const char* method)
{
    m_bHasObject = false;
    Enter0(stream, name, method);
}

void KELTraceMethEntrance::Enter(TTraceStream& stream, const char* name, const void* object, const char* method)
{
    m_bHasObject = true;
    m_pObject = object;
    Enter0(stream, name, method);
}

void KELTraceMethEntrance::Enter0(TTraceStream& stream, const char* name, const char* method)
{
    m_pszName = name;
    m_pszMethod = method;
    stream << name << " FUNC: Entering ";
    if (m_bHasObject)
        stream << m_pObject << "->";
    stream << method;
}

void KELTraceMethEntrance::Leave()
{
    WriteLine(": Leaving  ");
    m_pszMethod = nullptr;
}

void KELTraceMethEntrance::WriteLine(const char* text)
{
    if (!IsOn(m_moduleBit | KEL_TRACE_FUNC))
        return;
    KELTraceStream stream(m_moduleBit, KEL_TRACE_FUNC);
    stream << m_pszName << " FUNC" << text;
    if (m_bHasObject)
        stream << m_pObject << "->";
    stream << m_pszMethod << endl;
}
