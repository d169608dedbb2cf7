// SPDX-License-Identifier: BSD-3-Clause
#include "kel/controls/KELFilterBox.h"

#include <QAbstractScrollArea>
#include <QKeyEvent>
#include <QLabel>
#include <QShortcut>

KELFilterBox::KELFilterBox(QAbstractScrollArea* owner, std::function<void(const QString&)> changed)
    : QLineEdit(owner), m_pOwner(owner), m_pCount(new QLabel(this))
{
    m_pCount->setForegroundRole(QPalette::PlaceholderText);
    m_pCount->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_pCount->hide();
    setPlaceholderText(QStringLiteral("Filter (Ctrl+F)"));
    setAccessibleName(QStringLiteral("Filter"));
    setClearButtonEnabled(true);
    connect(this, &QLineEdit::textChanged, this,
            [changed = std::move(changed)](const QString& text) { changed(text); });
    auto* focus = new QShortcut(QKeySequence::Find, owner);
    focus->setContext(Qt::WidgetWithChildrenShortcut);
    connect(focus, &QShortcut::activated, this, [this] {
        setFocus(Qt::ShortcutFocusReason);
        selectAll();
    });
}

void KELFilterBox::Place(int top)
{
    const int frame = m_pOwner->frameWidth();
    setGeometry(frame, frame + top, m_pOwner->width() - 2 * frame, Room());
    PlaceCount();
}

void KELFilterBox::SetCount(const QString& count)
{
    if (count == m_pCount->text())
        return;
    m_pCount->setText(count);
    m_pCount->setVisible(!count.isEmpty());
    setAccessibleDescription(count);
    PlaceCount();
}

QString KELFilterBox::GetCount() const { return m_pCount->text(); }

// The count stands at the right end, left of the clear button; typing stops short of it.
void KELFilterBox::PlaceCount()
{
    const int width = m_pCount->isHidden() ? 0 : m_pCount->sizeHint().width();
    const int clear = height();  // the clear button is about as wide as the line is high
    m_pCount->setGeometry(this->width() - clear - width, 0, width, height());
    setTextMargins(0, 0, width ? width + 4 : 0, 0);
}

bool KELFilterBox::Matches(const QString& filter, const QString& text)
{
    return filter.isEmpty() || text.contains(filter, Qt::CaseInsensitive);
}

bool KELFilterBox::event(QEvent* event)
{
    if (event->type() == QEvent::ShortcutOverride && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape
        && !text().isEmpty()) {
        event->accept();
        return true;
    }
    return QLineEdit::event(event);
}

void KELFilterBox::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape && !text().isEmpty()) {
        clear();
        event->accept();
        return;
    }
    QLineEdit::keyPressEvent(event);
}
