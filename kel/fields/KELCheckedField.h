#pragma once

#include "kel/KELExport.h"

#include <string>

/// A field whose text can be one its kind does not take (a number, a time):
/// such a text is never sent as some other value; the request stops and the
/// operator hears which line holds it and why.
class KEL_EXPORT KELCheckedField {
public:
    virtual ~KELCheckedField();
    /// False, with the reason, when the text is neither empty nor valid.
    virtual bool CheckText(std::string* reason = nullptr) = 0;
};
