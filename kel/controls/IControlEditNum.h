// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/controls/KELCheckedEdit.h"

/// The edit control of a number: a checked edit, so that a text that is no
/// number of the field's kind is marked where it stands.
class KEL_EXPORT IControlEditNum : public KELCheckedEdit {
public:
    IControlEditNum(IField* field, QWidget* parent);
    ~IControlEditNum() override;
};
