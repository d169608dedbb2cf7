// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <string>

/// The server's default of a kind whose control shows it as a placeholder
/// (a choice, a date and time) rather than as its text: once shown it holds,
/// and the field's text is the default's, until a value is put in or the
/// operator changes the control.
class KEL_EXPORT KELPlaceholderDefault {
public:
    virtual ~KELPlaceholderDefault();

protected:
    /// Shows text in place of a value; the server's default no longer holds.
    virtual void ShowNothing(const std::string& text) = 0;
    /// Shows "<server default>" and lets the default hold; true.
    bool ShowServerDefault();
    bool ServerDefaultHolds() const { return m_holds; }
    void ForgetServerDefault() { m_holds = false; }

private:
    bool m_holds = false;
};
