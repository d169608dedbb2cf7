// SPDX-License-Identifier: BSD-3-Clause
#include "kel/controls/KELCheckedEdit.h"

#include "kel/fields/IField.h"

KELCheckedEdit::KELCheckedEdit(IField* field, QWidget* parent) : KELControl<QLineEdit>(field, parent)
{
    QObject::connect(this, &QLineEdit::textEdited, this, [this] {
        if (m_invalid && GetField())
            GetField()->ControlCallback(KEL_CONTROL_CHANGED, nullptr);
    });
}

KELCheckedEdit::~KELCheckedEdit() = default;

void KELCheckedEdit::MarkInvalid(const QString& reason)
{
    const bool invalid = !reason.isEmpty();
    if (invalid && !m_invalid) {
        m_toolTip = toolTip();
        m_description = accessibleDescription();
    }
    if (invalid) {
        setStyleSheet(QStringLiteral("QLineEdit { border: 2px solid #c00000; }"));
        setToolTip(reason);
        setAccessibleDescription(reason);
    } else if (m_invalid) {
        setStyleSheet(QString());
        setToolTip(m_toolTip);
        setAccessibleDescription(m_description);
    }
    m_invalid = invalid;
}

void KELCheckedEdit::focusOutEvent(QFocusEvent* event)
{
    KELControl<QLineEdit>::focusOutEvent(event);
    if (GetField())
        GetField()->ControlCallback(KEL_CONTROL_KILLFOCUS, nullptr);
}
