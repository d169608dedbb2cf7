// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <QObject>

class QLineEdit;
class QString;

/// A text limit that binds the operator's typing only. What the program puts
/// in (a reply, a default, saved contents, a refresh) is shown whole, so that
/// it is never cut and later sent cut; typing never makes a text longer than
/// the limit, or than a longer text the program put in, until the operator
/// shortens it below the limit.
class KEL_EXPORT KELTypingLimit : public QObject {
public:
    /// Binds the edit's typing to the limit from now on (0 or less: no limit
    /// of its own). The edit owns the binding; null without an edit.
    static KELTypingLimit* Apply(QLineEdit* edit, int limit);
    /// Shows the text whole, whatever the limit.
    void SetText(const QString& text);

private:
    KELTypingLimit(QLineEdit* edit, int limit);
    void Fit();

    QLineEdit* m_pEdit;  // the parent
    int m_limit;
    int m_room = 0;  // what a longer text put in by the program needs
};
