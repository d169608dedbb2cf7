#include "kel/controls/KELFilterBox.h"

#include <QAbstractScrollArea>
#include <QKeyEvent>
#include <QShortcut>

KELFilterBox::KELFilterBox(QAbstractScrollArea* owner, std::function<void(const QString&)> changed)
    : QLineEdit(owner), m_pOwner(owner)
{
    setPlaceholderText(QStringLiteral("Filter (Ctrl+F)"));
    setAccessibleName(QStringLiteral("Filter"));
    setClearButtonEnabled(true);
    connect(this, &QLineEdit::textChanged, this, [changed = std::move(changed)](const QString& text) { changed(text); });
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
