#pragma once

#include "kel/frame/KELPrompt.h"

#include <memory>
#include <string>
#include <vector>

// Installed for a test: records message boxes instead of showing them.
class PromptRecorder : public KELPrompt {
public:
    struct Shown {
        Icon icon;
        std::string caption;
        std::string text;
    };

    static std::shared_ptr<std::vector<Shown>> Install()
    {
        auto log = std::make_shared<std::vector<Shown>>();
        KELPrompt::Install(std::make_unique<PromptRecorder>(log));
        return log;
    }

    explicit PromptRecorder(std::shared_ptr<std::vector<Shown>> log) : m_log(std::move(log)) {}
    void Show(Icon icon, const std::string& caption, const std::string& text) override
    {
        m_log->push_back({icon, caption, text});
    }

private:
    std::shared_ptr<std::vector<Shown>> m_log;
};
