#pragma once

#include "kel/controls/KELControl.h"

#include <QLineEdit>

/// The edit control of a number. It tells its field when it loses the focus
/// and when its text changes, so the field can check the text; and it shows
/// an invalid text where it stands (a red frame, the reason as tooltip and
/// accessible description) without ever holding the focus.
class KEL_EXPORT IControlEditNum : public KELControl<QLineEdit> {
public:
    IControlEditNum(IField* field, QWidget* parent);
    ~IControlEditNum() override;

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
