// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/controls/IControlBase.h"

#include <QEvent>

class IField;
class QWidget;

/// A window control that edits a field: any Qt widget with the field's popup
/// menu (right click, Menu key, Shift+F10) in place of its own.
template <class Widget>
class KELControl : public Widget, public IControlBase {
public:
    KELControl(IField* field, QWidget* parent) : Widget(parent), IControlBase(field) {}

protected:
    bool event(QEvent* event) override { return HandlePopupEvent(this, event) || Widget::event(event); }
};
