// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <memory>
#include <string>

/// Every message box of the library goes through one replaceable service:
/// by default a QMessageBox when a GUI application runs on a display, and
/// standard error otherwise (a box nobody can see would wait for ever);
/// tests install a recorder, so that no test ever blocks.
class KEL_EXPORT KELPrompt {
public:
    enum class Icon { Information, Warning, Stop };
    enum class Answer { Yes, No, Cancel };

    virtual ~KELPrompt();
    virtual void Show(Icon icon, const std::string& caption, const std::string& text) = 0;
    /// A question for yes or no (and cancel when cancel is true). This base
    /// shows it and answers the safe way, cancel when it may, else no: a
    /// service that cannot ask a person never agrees on the person's behalf.
    virtual Answer Ask(const std::string& caption, const std::string& text, bool cancel);

    static void Message(Icon icon, const std::string& caption, const std::string& text);
    static Answer Question(const std::string& caption, const std::string& text, bool cancel);
    /// Installs a service; null goes back to the default. Returns the one it replaces.
    static std::unique_ptr<KELPrompt> Install(std::unique_ptr<KELPrompt> prompt);
    /// Whether a person can see a window: a GUI application on a real display.
    static bool Interactive();
};
