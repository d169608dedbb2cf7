// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

class TValue;

/// An element that shows a value of a reply: a form line, a list column, a
/// text element. Reply processing reaches every kind through this.
class KEL_EXPORT KELValueElement {
public:
    KELValueElement() = default;
    KELValueElement(const KELValueElement&) = default;
    KELValueElement& operator=(const KELValueElement&) = default;
    virtual ~KELValueElement();

    virtual void SetValue(const TValue& value) = 0;
    virtual void SetToNotReturned() = 0;
};
