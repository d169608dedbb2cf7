// SPDX-License-Identifier: BSD-3-Clause
#include "kel/controls/KELTypingLimit.h"

#include <QLineEdit>

#include <algorithm>
#include <climits>

namespace {

// What a limit of 0 means to an edit control: no limit of its own.
constexpr int kNoLimit = 32767;

}  // namespace

KELTypingLimit::KELTypingLimit(QLineEdit* edit, int limit)
    : QObject(edit), m_pEdit(edit), m_limit(limit <= 0 || limit > kNoLimit ? kNoLimit : limit)
{
    m_room = static_cast<int>(std::min<qsizetype>(edit->text().size(), INT_MAX));
    Fit();
    connect(edit, &QLineEdit::textEdited, this, [this](const QString& text) {
        if (text.size() <= m_limit) {
            m_room = 0;
            Fit();
        }
    });
}

KELTypingLimit* KELTypingLimit::Apply(QLineEdit* edit, int limit)
{
    return edit ? new KELTypingLimit(edit, limit) : nullptr;
}

void KELTypingLimit::Fit() { m_pEdit->setMaxLength(std::max(m_limit, m_room)); }

void KELTypingLimit::SetText(const QString& text)
{
    m_room = static_cast<int>(std::min<qsizetype>(text.size(), INT_MAX));
    Fit();
    m_pEdit->setText(text);
}
