// SPDX-License-Identifier: BSD-3-Clause
#include "kel/frame/KELAssert.h"

#include "kel/frame/KELTrace.h"

void KELAssertHandler(const char* file, int line, const std::string& message)
{
    KEL_TRACE(KEL_TRACE_PBLM, "KELAssert", nullptr)
        << "KEL : assertion failed : " << message << " (" << file << ':' << line << ')';
}
