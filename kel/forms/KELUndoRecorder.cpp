// SPDX-License-Identifier: BSD-3-Clause
#include "kel/forms/KELUndoRecorder.h"

#include "kel/controls/IControlContainer.h"
#include "kel/fields/IField.h"
#include "kel/fields/KELCompositeField.h"
#include "kel/forms/IFormLine.h"
#include "kel/forms/IPresentationForm.h"
#include "zed/value/TValue.h"

#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QShortcut>
#include <QTextEdit>
#include <QUndoStack>

namespace {

constexpr int kLineStep = 1;  // the id under which typing steps merge

// A step: one line's value before and after. Typing that goes on in the same
// line merges into the step it goes on from.
class ValueStep : public QUndoCommand {
public:
    ValueStep(KELUndoRecorder& recorder, int key, KELUndoRecorder::Seen before, KELUndoRecorder::Seen after,
              bool typing, bool goesOn)
        : m_recorder(recorder), m_key(key), m_before(std::move(before)), m_after(std::move(after)), m_typing(typing),
          m_goesOn(goesOn)
    {
    }
    int id() const override { return m_typing ? kLineStep : -1; }
    bool mergeWith(const QUndoCommand* other) override
    {
        const auto* next = static_cast<const ValueStep*>(other);
        if (!next->m_goesOn || next->m_key != m_key)
            return false;
        m_after = next->m_after;
        return true;
    }
    void undo() override { m_recorder.Restore(m_key, m_before); }
    // The first redo is the push: the change is already on the form.
    void redo() override
    {
        if (!m_pushed) {
            m_pushed = true;
            return;
        }
        m_recorder.Restore(m_key, m_after);
    }

private:
    KELUndoRecorder& m_recorder;
    int m_key;
    KELUndoRecorder::Seen m_before, m_after;
    bool m_typing;
    bool m_goesOn;
    bool m_pushed = false;
};

// Typing goes into a text box; a drop-down's own text box takes choices.
bool IsTyping(const QWidget* widget)
{
    if (!widget || qobject_cast<const QComboBox*>(widget->parentWidget()))
        return false;
    return qobject_cast<const QLineEdit*>(widget) || qobject_cast<const QPlainTextEdit*>(widget)
           || qobject_cast<const QTextEdit*>(widget);
}

std::shared_ptr<const TValue> ValueOf(IField& field) { return std::shared_ptr<const TValue>(field.GetTValue(false)); }

}  // namespace

KELUndoRecorder::KELUndoRecorder(IPresentationForm& form) : QObject(&form), m_form(form), m_pStack(new QUndoStack(this))
{
    auto* undo = new QShortcut(QKeySequence::Undo, &form);
    undo->setContext(Qt::WidgetWithChildrenShortcut);
    connect(undo, &QShortcut::activated, this, [this] {
        Record();  // what was just typed is a step to undo first
        m_pStack->undo();
    });
    auto* redo = new QShortcut(QKeySequence::Redo, &form);
    redo->setContext(Qt::WidgetWithChildrenShortcut);
    connect(redo, &QShortcut::activated, m_pStack, &QUndoStack::redo);
    qApp->installEventFilter(this);
}

KELUndoRecorder::~KELUndoRecorder()
{
    if (qApp)
        qApp->removeEventFilter(this);
}

// A text box takes Ctrl+Z for its own undo of one line; in a form the
// form's undo, which knows every line, takes it instead.
bool KELUndoRecorder::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::ShortcutOverride || !watched->isWidgetType())
        return false;
    const auto* key = static_cast<QKeyEvent*>(event);
    if (!key->matches(QKeySequence::Undo) && !key->matches(QKeySequence::Redo))
        return false;
    for (const QWidget* up = static_cast<QWidget*>(watched); up; up = up->parentWidget())
        if (up == &m_form)
            return true;  // not accepted: the form's shortcut runs
    return false;
}

void KELUndoRecorder::TakeAll()
{
    m_seen.clear();
    if (IControlContainer* lines = m_form.GetControlContainer())
        lines->ForEachElement([&](IPresentationElement& element) {
            auto* line = dynamic_cast<IFormLine*>(&element);
            IField* field = line ? line->GetField() : nullptr;
            if (!field || field->IsReadOnly())
                return;
            Seen seen;
            field->GetValue(seen.text);
            seen.value = ValueOf(*field);
            m_seen[element.GetKey()] = std::move(seen);
        });
    m_started = true;
    m_typingLine = -1;
}

void KELUndoRecorder::Record()
{
    if (m_restoring)
        return;
    if (!m_started) {
        TakeAll();  // what the form opened with is where undoing stops
        return;
    }
    IControlContainer* lines = m_form.GetControlContainer();
    if (!lines)
        return;
    const QWidget* focus = QApplication::focusWidget();
    lines->ForEachElement([&](IPresentationElement& element) {
        auto* line = dynamic_cast<IFormLine*>(&element);
        IField* field = line ? line->GetField() : nullptr;
        if (!field || field->IsReadOnly())
            return;
        std::string text;
        field->GetValue(text);
        Seen& seen = m_seen[element.GetKey()];
        if (text == seen.text)
            return;
        std::shared_ptr<const TValue> now = ValueOf(*field);
        const bool typing = IsTyping(focus) && field->GetWindow()->isAncestorOf(focus);
        // Typing goes on in the same line while the focus stays in the same box.
        const bool goesOn = typing && m_typingLine == element.GetKey() && m_typingIn == focus;
        Seen after{text, now};
        m_pStack->push(new ValueStep(*this, element.GetKey(), seen, after, typing, goesOn));
        m_typingLine = typing ? element.GetKey() : -1;
        m_typingIn = typing ? focus : nullptr;
        seen.text = std::move(text);
        seen.value = std::move(now);
    });
}

void KELUndoRecorder::Boundary()
{
    // Pushing a step that is obsolete at once drops every step to redo.
    auto* boundary = new QUndoCommand;
    boundary->setObsolete(true);
    m_pStack->push(boundary);
    TakeAll();
}

void KELUndoRecorder::Restore(int key, const Seen& seen)
{
    IControlContainer* lines = m_form.GetControlContainer();
    auto* line = lines ? dynamic_cast<IFormLine*>(lines->FindElement(key)) : nullptr;
    IField* field = line ? line->GetField() : nullptr;
    if (!field)
        return;
    m_restoring = true;
    // A field edited as one text takes its text back exactly (a server
    // default included); a composite its whole value, elements and all.
    if (!dynamic_cast<KELCompositeField*>(field))
        field->SetValue(seen.text);
    else if (seen.value)
        field->SetValue(*seen.value);
    else
        field->SetToNullValue();
    Seen& now = m_seen[key];
    field->GetValue(now.text);
    now.value = seen.value;
    m_restoring = false;
    m_typingLine = -1;
}
