// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/forms/IFormLine.h"

/// A read-only line of an output form that is tied to no dictionary value
/// (the entity, the time, the reply's text): its text stands in bold on the
/// form's own background and takes no part in requests.
class KEL_EXPORT ICommentLine : public IFormLine {
public:
    ICommentLine(IElementInfo& info, IContainer* container, unsigned int& counter);
    ~ICommentLine() override;
};
