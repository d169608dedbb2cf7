// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <exception>
#include <string>

/// The one exception that leaves the library: a window could not be created.
class KEL_EXPORT ICreationFailedException : public std::exception {
public:
    explicit ICreationFailedException(std::string message);
    ~ICreationFailedException() override;

    virtual const std::string& ToString() const { return m_message; }
    const char* what() const noexcept override { return m_message.c_str(); }

private:
    std::string m_message;
};

/// Nothing when condition holds; otherwise traces the failure and throws
/// ICreationFailedException with string 4039 formatted with the name. Callers
/// use it right after creating a child window.
KEL_EXPORT void ZEDAssertCreationFailed(int condition, const std::string& name);
