// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/controls/KELCheckedEdit.h"

#include <QDateTime>
#include <QPointer>

class QCalendarWidget;

/// The edit control of a date and time, in UTC. It is typed through a mask of
/// its display format: the separators stand where they belong, digits fill in
/// (typing a separator too is fine), and a date without a time gets midnight
/// when the control is left. Its calendar opens from the button at its end,
/// or with Alt+Down or F4, at the date typed (else today) and keeps the time
/// typed. Tab leaves it as it leaves any edit. Without a time it is empty
/// and shows a placeholder: the format, or a text that stands for the value
/// (not returned, server default).
class KEL_EXPORT IControlDateTime : public KELCheckedEdit {
public:
    /// format: Qt's date-time format ("MM/dd/yyyy HH:mm:ss").
    IControlDateTime(IField* field, QWidget* parent, const QString& format);
    ~IControlDateTime() override;

    const QString& GetFormat() const { return m_format; }
    /// Empty, showing the placeholder (the format itself when it is empty).
    void ShowNothing(const QString& placeholder);
    void ShowTime(const QDateTime& time);
    /// No digit typed.
    bool IsBlank() const;
    /// The time shown; invalid when it is incomplete or no such time.
    QDateTime Time() const;
    /// What the operator reads: the text, or the placeholder when empty.
    QString ShownText() const;

    void OpenCalendar();
    /// The open calendar, or null.
    QCalendarWidget* GetCalendar() const;

protected:
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void Mask(bool on);
    void CompleteTime();
    void Pick(const QDate& date);

    QString m_format;
    QString m_mask;
    int m_timeAt;  // where the time begins in the format
    QPointer<QCalendarWidget> m_calendar;
};
