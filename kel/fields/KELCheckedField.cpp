// SPDX-License-Identifier: BSD-3-Clause
#include "kel/fields/KELCheckedField.h"

#include "kel/controls/KELCheckedEdit.h"

KELCheckedField::~KELCheckedField() = default;

bool KELCheckedField::CheckOnCallback(KELCheckedEdit* edit, int code, bool readOnly)
{
    if (!edit || readOnly || (code != KEL_CONTROL_KILLFOCUS && code != KEL_CONTROL_CHANGED))
        return false;
    std::string reason;
    const bool valid = CheckText(&reason);
    edit->MarkInvalid(valid ? QString() : QString::fromStdString(reason));
    return valid;
}
