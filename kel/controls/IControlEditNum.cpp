// SPDX-License-Identifier: BSD-3-Clause
#include "kel/controls/IControlEditNum.h"

IControlEditNum::IControlEditNum(IField* field, QWidget* parent) : KELCheckedEdit(field, parent) {}

IControlEditNum::~IControlEditNum() = default;
