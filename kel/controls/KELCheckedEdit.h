// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/controls/KELControl.h"

#include <QLineEdit>

/// A one-line edit whose text its field checks. It tells the field when it
/// loses the focus and, while marked invalid, when its text changes; an
/// invalid text is marked where it stands (a red frame, the reason as tooltip
/// and accessible description) without ever holding the focus.
class KEL_EXPORT KELCheckedEdit : public KELControl<QLineEdit> {
public:
    KELCheckedEdit(IField* field, QWidget* parent);
    ~KELCheckedEdit() override;

    /// Marks the text invalid with the reason, or (empty reason) valid again.
    void MarkInvalid(const QString& reason);
    bool IsMarkedInvalid() const { return m_invalid; }

protected:
    void focusOutEvent(QFocusEvent* event) override;

private:
    bool m_invalid = false;
    QString m_toolTip;
    QString m_description;
};
