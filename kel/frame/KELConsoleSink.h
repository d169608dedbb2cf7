// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <string>

/// The severity of a console message; each has its icon in the console.
enum KEL_T_Severity {
    KEL_SEVERITY_DONE = 0,  // something finished, e.g. a file saved
    KEL_SEVERITY_PROBLEM = 1,
    KEL_SEVERITY_INFORMATION = 2,  // e.g. a file loaded, or that could not be
};

/// What the application object hands operator messages to: the console's
/// first output tab. The console classes implement it; the host sets one on
/// the application object.
class KEL_EXPORT IMessageConsole {
public:
    virtual ~IMessageConsole();
    /// False while the console has no window: messages are then dropped.
    virtual bool HasWindow() const = 0;
    virtual void SetMessage(KEL_T_Severity severity, const std::string& text) = 0;
};
