// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

class IField;
class QWidget;

/// What the control container needs of a form line to lay it out: its label,
/// its field, its units and its indentation level. Form lines implement it.
class KEL_EXPORT KELFormLineLayout {
public:
    virtual ~KELFormLineLayout();

    virtual QWidget* GetLabelWindow() const = 0;
    virtual IField* GetLineField() const = 0;
    /// Null when the element has no units.
    virtual IField* GetUnitField() const = 0;
    virtual unsigned int GetIndentLevel() const = 0;
    /// A line kept but not shown takes no room.
    virtual bool IsLineShown() const { return true; }
};
