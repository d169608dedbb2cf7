// SPDX-License-Identifier: BSD-3-Clause
#include "kel/controls/IControlDateTime.h"

#include <QAction>
#include <QCalendarWidget>
#include <QKeyEvent>
#include <QPainter>
#include <QPixmap>
#include <QRegularExpression>
#include <QScreen>

#include <algorithm>

namespace {

constexpr QChar kBlank = QLatin1Char('_');

// The mask of a format: a digit for each letter, every other character kept
// (escaped where the mask language would read it).
QString MaskOf(const QString& format)
{
    static const QString kMeta = QStringLiteral("AaNnXx90Dd#HhBb><!;\\[]{}");
    QString mask;
    for (const QChar c : format) {
        if (c.isLetter())
            mask += QLatin1Char('9');
        else
            mask += (kMeta.contains(c) ? QStringLiteral("\\") : QString()) + c;
    }
    return mask + QLatin1Char(';') + kBlank;
}

// A small calendar: a page with a ring binding and a grid of days.
QIcon CalendarIcon(const QPalette& palette)
{
    QPixmap page(16, 16);
    page.fill(Qt::transparent);
    QPainter painter(&page);
    const QColor ink = palette.color(QPalette::Text);
    painter.setPen(ink);
    painter.drawRect(1, 2, 13, 12);
    painter.fillRect(1, 2, 14, 3, ink);
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 4; ++column)
            painter.fillRect(3 + column * 3, 7 + row * 2, 2, 1, ink);
    return QIcon(page);
}

}  // namespace

IControlDateTime::IControlDateTime(IField* field, QWidget* parent, const QString& format)
    : KELCheckedEdit(field, parent), m_format(format), m_mask(MaskOf(format))
{
    m_timeAt = static_cast<int>(format.indexOf(QRegularExpression(QStringLiteral("[Hh]"))));
    if (m_timeAt < 0)
        m_timeAt = static_cast<int>(format.size());
    QAction* calendar = addAction(CalendarIcon(palette()), QLineEdit::TrailingPosition);
    calendar->setToolTip(QStringLiteral("Calendar (Alt+Down)"));
    QObject::connect(calendar, &QAction::triggered, this, [this] { OpenCalendar(); });
    ShowNothing(QString());
}

IControlDateTime::~IControlDateTime() = default;

QCalendarWidget* IControlDateTime::GetCalendar() const { return m_calendar; }

void IControlDateTime::Mask(bool on)
{
    if (on == !inputMask().isEmpty())
        return;
    setInputMask(on ? m_mask : QString());
}

void IControlDateTime::ShowNothing(const QString& placeholder)
{
    // While the operator is in it, the places to type stay shown.
    Mask(hasFocus() && !isReadOnly());
    clear();
    setPlaceholderText(placeholder.trimmed().isEmpty() ? m_format.toUpper() : placeholder);
}

void IControlDateTime::ShowTime(const QDateTime& time)
{
    Mask(true);
    setText(time.toUTC().toString(m_format));
    setCursorPosition(0);
}

bool IControlDateTime::IsBlank() const
{
    const QString typed = text();
    return std::none_of(typed.begin(), typed.end(), [](QChar c) { return c.isDigit(); });
}

QDateTime IControlDateTime::Time() const
{
    if (inputMask().isEmpty() || !hasAcceptableInput())
        return QDateTime();
    const QString shown = displayText();
    const QDate date = QDate::fromString(shown.left(m_timeAt).trimmed(), m_format.left(m_timeAt).trimmed());
    const QTime time =
        m_timeAt < m_format.size() ? QTime::fromString(shown.mid(m_timeAt), m_format.mid(m_timeAt)) : QTime(0, 0);
    if (!date.isValid() || !time.isValid())
        return QDateTime();
    return QDateTime(date, time, Qt::UTC);
}

QString IControlDateTime::ShownText() const { return IsBlank() ? placeholderText() : displayText(); }

void IControlDateTime::CompleteTime()
{
    // A whole date and no time at all: midnight, so that what is shown is what goes.
    const QString shown = displayText();
    if (m_timeAt >= shown.size() || shown.left(m_timeAt).contains(kBlank))
        return;
    const QString time = shown.mid(m_timeAt);
    if (std::any_of(time.begin(), time.end(), [](QChar c) { return c.isDigit(); }))
        return;
    QString zeros = m_format.mid(m_timeAt);
    for (QChar& c : zeros)
        if (c.isLetter())
            c = QLatin1Char('0');
    setText(shown.left(m_timeAt) + zeros);
}

void IControlDateTime::focusInEvent(QFocusEvent* event)
{
    if (!isReadOnly() && IsBlank()) {
        Mask(true);
        KELCheckedEdit::focusInEvent(event);
        setCursorPosition(0);
        return;
    }
    KELCheckedEdit::focusInEvent(event);
}

// A click anywhere in an empty field starts the typing at its first place.
void IControlDateTime::mousePressEvent(QMouseEvent* event)
{
    KELCheckedEdit::mousePressEvent(event);
    if (!isReadOnly() && IsBlank())
        setCursorPosition(0);
}

void IControlDateTime::focusOutEvent(QFocusEvent* event)
{
    if (event->reason() == Qt::PopupFocusReason || (m_calendar && m_calendar->isVisible())) {
        // The calendar took the focus for a moment; the control is not left.
        QLineEdit::focusOutEvent(event);
        return;
    }
    if (IsBlank())
        ShowNothing(placeholderText());
    else
        CompleteTime();
    KELCheckedEdit::focusOutEvent(event);
}

void IControlDateTime::keyPressEvent(QKeyEvent* event)
{
    const bool open =
        (event->key() == Qt::Key_Down && event->modifiers() & Qt::AltModifier) || event->key() == Qt::Key_F4;
    if (open && !isReadOnly()) {
        OpenCalendar();
        return;
    }
    KELCheckedEdit::keyPressEvent(event);
}

void IControlDateTime::OpenCalendar()
{
    if (isReadOnly())
        return;
    if (!m_calendar) {
        m_calendar = new QCalendarWidget(this);
        m_calendar->setWindowFlags(Qt::Popup);
        m_calendar->setAttribute(Qt::WA_DeleteOnClose);
        m_calendar->setGridVisible(true);
        QObject::connect(m_calendar, &QCalendarWidget::activated, this, [this](const QDate& date) { Pick(date); });
        QObject::connect(m_calendar, &QCalendarWidget::clicked, this, [this](const QDate& date) { Pick(date); });
    }
    // At the date typed, else today: never at the control's lowest date.
    QDate date = QDate::fromString(displayText().left(m_timeAt).trimmed(), m_format.left(m_timeAt).trimmed());
    if (!date.isValid())
        date = QDateTime::currentDateTimeUtc().date();
    m_calendar->setSelectedDate(date);
    m_calendar->adjustSize();
    QPoint at = mapToGlobal(QPoint(0, height()));
    if (const QScreen* shown = screen()) {
        const QRect room = shown->availableGeometry();
        at.setX(std::clamp(at.x(), room.left(), std::max(room.left(), room.right() - m_calendar->width())));
        if (at.y() + m_calendar->height() > room.bottom())
            at.setY(mapToGlobal(QPoint(0, 0)).y() - m_calendar->height());
    }
    m_calendar->move(at);
    m_calendar->show();
    m_calendar->setFocus();
}

void IControlDateTime::Pick(const QDate& date)
{
    const QDateTime typed = Time();
    QTime time =
        typed.isValid() ? typed.time() : QTime::fromString(displayText().mid(m_timeAt), m_format.mid(m_timeAt));
    if (!time.isValid())
        time = QTime(0, 0);
    if (m_calendar)
        m_calendar->close();
    ShowTime(QDateTime(date, time, Qt::UTC));
    setFocus();
    // A pick is an edit as typing is: the field hears of it the same way.
    emit textEdited(text());
}
