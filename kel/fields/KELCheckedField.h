// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <string>

class KELCheckedEdit;

/// A field whose text can be one its kind does not take (a number, a time):
/// such a text is never sent as some other value; the request stops and the
/// operator hears which line holds it and why.
class KEL_EXPORT KELCheckedField {
public:
    virtual ~KELCheckedField();
    /// False, with the reason, when the text is neither empty nor valid.
    virtual bool CheckText(std::string* reason = nullptr) = 0;

protected:
    /// What the field's control tells it: when the control lost the focus or
    /// its text changed, the text is checked and the control marked (or
    /// unmarked) where it stands. True when the text was checked and is valid.
    bool CheckOnCallback(KELCheckedEdit* edit, int code, bool readOnly);
};
