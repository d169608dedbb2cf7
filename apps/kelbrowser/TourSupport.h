// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// What the tours share: message boxes written to the transcript, and the
// window's picture saved.

#include "kel/frame/KELPrompt.h"

#include <QApplication>
#include <QPixmap>
#include <QWidget>

#include <ostream>
#include <string>

// Message boxes of the tour go to its transcript instead of waiting for a person.
class TranscriptPrompt : public KELPrompt {
public:
    explicit TranscriptPrompt(std::ostream& out) : m_out(out) {}
    void Show(Icon, const std::string& caption, const std::string& text) override
    {
        m_out << "  message box \"" << caption << "\": " << text << "\n";
        ++shown;
    }
    // The tour means what it does: it says yes.
    Answer Ask(const std::string& caption, const std::string& text, bool) override
    {
        m_out << "  question \"" << caption << "\": " << text << " yes\n";
        return Answer::Yes;
    }
    int shown = 0;

private:
    std::ostream& m_out;
};

inline bool Save(QWidget& window, const std::string& folder, const char* picture, std::ostream& out)
{
    QApplication::processEvents();
    const bool saved = window.grab().save(QString::fromStdString(folder + "/" + picture));
    out << "  picture: " << picture << (saved ? "" : " could not be written") << "\n";
    return saved;
}

class IField;
class KelBrowserWindow;

// F1 on the field, as an operator presses it: its help dialog, at that size,
// saved as the picture and closed again; 0, or 1 when it was not saved.
int SaveFieldHelp(KelBrowserWindow& window, IField& field, const std::string& folder, const char* picture,
                  const QSize& size, std::ostream& out);
