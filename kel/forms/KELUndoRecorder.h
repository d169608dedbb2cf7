// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QObject>

#include <map>
#include <memory>
#include <string>

class IPresentationForm;
class QUndoStack;
class QWidget;
class TValue;

// The undo and redo of a form's field edits. After each turn of the
// operator's input (the forms' idle pass) it compares each editable line's
// value with the one it last saw, and a line that changed becomes one step:
// what was typed into one line is one step until another line changes or the
// focus moves; a choice, a set element added or removed, a revert or a
// default is a step of its own. Undo and redo put the line's whole value back
// (a set's elements too). A refresh or a send is a boundary: what is shown
// then is where undoing stops, and nothing undone before it can be redone.
//
// Ctrl+Z and Ctrl+Shift+Z undo and redo in the form, also while a text box
// has the focus (whose own one-line undo would otherwise take the keys).
class KELUndoRecorder : public QObject {
public:
    explicit KELUndoRecorder(IPresentationForm& form);
    ~KELUndoRecorder() override;

    QUndoStack* Stack() const { return m_pStack; }
    // The idle pass: records what changed since the last.
    void Record();
    // A refresh or a send.
    void Boundary();
    // A line's value as it was seen: its text, and its whole value.
    struct Seen {
        std::string text;
        std::shared_ptr<const TValue> value;
    };
    // Puts a line's value back (undo, redo).
    void Restore(int key, const Seen& seen);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void TakeAll();

    IPresentationForm& m_form;
    QUndoStack* m_pStack;        // a child
    std::map<int, Seen> m_seen;  // by line key
    bool m_started = false;
    bool m_restoring = false;
    int m_typingLine = -1;
    const QWidget* m_typingIn = nullptr;
};
