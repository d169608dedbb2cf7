// SPDX-License-Identifier: BSD-3-Clause
#include "kel/frame/ICreationFailedException.h"
#include "kel/frame/KELString.h"

#include "kel/frame/KELResources.h"
#include "kel/frame/KELTrace.h"

ICreationFailedException::ICreationFailedException(std::string message) : m_message(std::move(message)) {}

ICreationFailedException::~ICreationFailedException() = default;

void ZEDAssertCreationFailed(int condition, const std::string& name)
{
    if (condition)
        return;
    // The line keeps the number it has always had in the library's trace.
    constexpr int kTraceLine = 143;
    if (KELTraceSite::Enabled(KEL_TRACE_EXCP))
        KELTraceSite(KEL_TRACE_EXCP, "KELException", kTraceLine, nullptr).Stream()
            << "KEL: " << name << " window creation failed";
    throw ICreationFailedException(KELResources::Format(KELString::kWindowCreationFailed, {name}));
}
