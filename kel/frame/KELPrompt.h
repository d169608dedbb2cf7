#pragma once

#include "kel/KELExport.h"

#include <memory>
#include <string>

/// Every message box of the library goes through one replaceable service:
/// by default a QMessageBox when a GUI application runs and standard error
/// otherwise; tests install a recorder, so that no test ever blocks.
class KEL_EXPORT KELPrompt {
public:
    enum class Icon { Information, Warning, Stop };

    virtual ~KELPrompt();
    virtual void Show(Icon icon, const std::string& caption, const std::string& text) = 0;

    static void Message(Icon icon, const std::string& caption, const std::string& text);
    /// Installs a service; null goes back to the default. Returns the one it replaces.
    static std::unique_ptr<KELPrompt> Install(std::unique_ptr<KELPrompt> prompt);
};
