// SPDX-License-Identifier: BSD-3-Clause
#include "kel/frame/KELPrompt.h"

#include <QApplication>
#include <QMessageBox>

#include <cstdio>

namespace {

void ToStandardError(const std::string& text)
{
    std::fputs(text.c_str(), stderr);
    if (text.empty() || text.back() != '\n')
        std::fputc('\n', stderr);
}

class DefaultPrompt final : public KELPrompt {
public:
    void Show(Icon icon, const std::string& caption, const std::string& text) override
    {
        if (!Interactive()) {
            ToStandardError(text);
            return;
        }
        const auto qtIcon = icon == Icon::Stop      ? QMessageBox::Critical
                            : icon == Icon::Warning ? QMessageBox::Warning
                                                    : QMessageBox::Information;
        QMessageBox box(qtIcon, QString::fromStdString(caption), QString::fromStdString(text));
        box.exec();
    }

    Answer Ask(const std::string& caption, const std::string& text, bool cancel) override
    {
        if (!Interactive())
            return KELPrompt::Ask(caption, text, cancel);
        QMessageBox::StandardButtons buttons = QMessageBox::Yes | QMessageBox::No;
        if (cancel)
            buttons |= QMessageBox::Cancel;
        const QMessageBox::StandardButton answer = QMessageBox::question(
            QApplication::activeWindow(), QString::fromStdString(caption), QString::fromStdString(text), buttons,
            cancel ? QMessageBox::Cancel : QMessageBox::No);
        return answer == QMessageBox::Yes ? Answer::Yes : answer == QMessageBox::No ? Answer::No : Answer::Cancel;
    }
};

std::unique_ptr<KELPrompt>& Current()
{
    static std::unique_ptr<KELPrompt> prompt = std::make_unique<DefaultPrompt>();
    return prompt;
}

}  // namespace

KELPrompt::~KELPrompt() = default;

KELPrompt::Answer KELPrompt::Ask(const std::string& caption, const std::string& text, bool cancel)
{
    Show(Icon::Warning, caption, text);
    return cancel ? Answer::Cancel : Answer::No;
}

bool KELPrompt::Interactive()
{
    if (!qobject_cast<QApplication*>(QCoreApplication::instance()))
        return false;
    const QString platform = QGuiApplication::platformName();
    return platform != QLatin1String("offscreen") && platform != QLatin1String("minimal");
}

void KELPrompt::Message(Icon icon, const std::string& caption, const std::string& text)
{
    Current()->Show(icon, caption, text);
}

KELPrompt::Answer KELPrompt::Question(const std::string& caption, const std::string& text, bool cancel)
{
    return Current()->Ask(caption, text, cancel);
}

std::unique_ptr<KELPrompt> KELPrompt::Install(std::unique_ptr<KELPrompt> prompt)
{
    std::unique_ptr<KELPrompt> previous = std::move(Current());
    Current() = prompt ? std::move(prompt) : std::make_unique<DefaultPrompt>();
    return previous;
}
