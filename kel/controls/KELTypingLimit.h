#pragma once

#include "kel/KELExport.h"

class QLineEdit;
class QString;

/// A text limit that binds the operator's typing only. What the program puts
/// in (a reply, a default, saved contents, a refresh) is shown whole, so that
/// it is never cut and later sent cut; typing never makes a text longer than
/// the limit, or than a longer text the program put in, until the operator
/// shortens it below the limit.
namespace KELTypingLimit {

/// The edit's limit from now on; 0 or less: none of its own.
KEL_EXPORT void Apply(QLineEdit* edit, int limit);
/// Shows the text whole, whatever the limit.
KEL_EXPORT void SetText(QLineEdit* edit, const QString& text);

} // namespace KELTypingLimit
