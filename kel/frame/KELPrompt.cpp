#include "kel/frame/KELPrompt.h"

#include <QApplication>
#include <QMessageBox>

#include <cstdio>

namespace {

class DefaultPrompt final : public KELPrompt {
public:
    void Show(Icon icon, const std::string& caption, const std::string& text) override
    {
        if (qobject_cast<QApplication*>(QCoreApplication::instance())) {
            const auto qtIcon = icon == Icon::Stop      ? QMessageBox::Critical
                                : icon == Icon::Warning ? QMessageBox::Warning
                                                        : QMessageBox::Information;
            QMessageBox box(qtIcon, QString::fromStdString(caption), QString::fromStdString(text));
            box.exec();
        } else {
            std::fputs(text.c_str(), stderr);
            if (text.empty() || text.back() != '\n')
                std::fputc('\n', stderr);
        }
    }
};

std::unique_ptr<KELPrompt>& Current()
{
    static std::unique_ptr<KELPrompt> prompt = std::make_unique<DefaultPrompt>();
    return prompt;
}

} // namespace

KELPrompt::~KELPrompt() = default;

void KELPrompt::Message(Icon icon, const std::string& caption, const std::string& text)
{
    Current()->Show(icon, caption, text);
}

std::unique_ptr<KELPrompt> KELPrompt::Install(std::unique_ptr<KELPrompt> prompt)
{
    std::unique_ptr<KELPrompt> previous = std::move(Current());
    Current() = prompt ? std::move(prompt) : std::make_unique<DefaultPrompt>();
    return previous;
}
