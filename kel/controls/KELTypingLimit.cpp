#include "kel/controls/KELTypingLimit.h"

#include <QLineEdit>

#include <algorithm>
#include <climits>

namespace {

constexpr const char* kLimitProperty = "kelTypingLimit";
// The room a longer text put in by the program leaves, until the operator
// shortens the text to the limit.
constexpr const char* kRoomProperty = "kelTypingRoom";
// What a limit of 0 means to an edit control: no limit of its own.
constexpr int kNoLimit = 32767;

int Property(const QLineEdit* edit, const char* name, int otherwise)
{
    const QVariant value = edit->property(name);
    return value.isValid() ? value.toInt() : otherwise;
}

void Fit(QLineEdit* edit)
{
    const int limit = Property(edit, kLimitProperty, kNoLimit);
    edit->setMaxLength(std::max(limit, Property(edit, kRoomProperty, 0)));
}

} // namespace

namespace KELTypingLimit {

void Apply(QLineEdit* edit, int limit)
{
    if (!edit)
        return;
    edit->setProperty(kLimitProperty, limit <= 0 || limit > kNoLimit ? kNoLimit : limit);
    edit->setProperty(kRoomProperty, static_cast<int>(edit->text().size()));
    Fit(edit);
    QObject::connect(edit, &QLineEdit::textEdited, edit, [edit](const QString& text) {
        if (text.size() <= Property(edit, kLimitProperty, kNoLimit)) {
            edit->setProperty(kRoomProperty, 0);
            Fit(edit);
        }
    });
}

void SetText(QLineEdit* edit, const QString& text)
{
    if (!edit)
        return;
    edit->setProperty(kRoomProperty, static_cast<int>(std::min<qsizetype>(text.size(), INT_MAX)));
    Fit(edit);
    edit->setText(text);
}

} // namespace KELTypingLimit
