// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <string>

/// The library's handler of the access library's assertions, installed for
/// the life of the application object: a failed ZEDAssertM inside the library
/// (a duplicate form line, say) is a fault to trace, not a reason to take the
/// host's window down, so the handler writes a problem line and returns.
KEL_EXPORT void KELAssertHandler(const char* file, int line, const std::string& message);
