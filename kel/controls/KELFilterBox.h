// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <QLineEdit>

#include <functional>

class QAbstractScrollArea;
class QLabel;

/// The filter line across the top of a form or a list: what is typed narrows
/// what the owner shows for the moment (nothing is saved, nothing else
/// changes). Ctrl+F anywhere in the owner focuses it; Escape in it clears it.
/// The owner leaves room for it above its viewport and places it there. It
/// may carry, at its right end, a count the owner gives ("12 of 4,000 rows").
class KEL_EXPORT KELFilterBox : public QLineEdit {
public:
    /// Calls changed with the text on every edit, and with "" when cleared.
    KELFilterBox(QAbstractScrollArea* owner, std::function<void(const QString&)> changed);

    /// The room it takes above the owner's viewport.
    int Room() const { return sizeHint().height(); }
    /// Lays it across the owner's top, `top` pixels down.
    void Place(int top);
    /// The count at its right end; empty shows none.
    void SetCount(const QString& count);
    QString GetCount() const;

    /// Whether the text occurs in the filter's sense: case-insensitively,
    /// anywhere; an empty filter matches everything.
    static bool Matches(const QString& filter, const QString& text);

protected:
    // Escape clears a filter before any window-wide Escape (a cancel) takes it.
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void PlaceCount();

    QAbstractScrollArea* m_pOwner;  // the parent
    QLabel* m_pCount;               // a child
};
