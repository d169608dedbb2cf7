// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/frame/KELPrompt.h"

#include <memory>
#include <string>
#include <vector>

// Installed for a test: records message boxes and questions instead of
// showing them; questions get the answer the test set (yes at first).
class PromptRecorder : public KELPrompt {
public:
    struct Shown {
        Icon icon;
        std::string caption;
        std::string text;
    };
    struct Log : std::vector<Shown> {
        Answer answer = Answer::Yes;
        std::vector<std::string> questions;
    };

    static std::shared_ptr<Log> Install()
    {
        auto log = std::make_shared<Log>();
        KELPrompt::Install(std::make_unique<PromptRecorder>(log));
        return log;
    }

    explicit PromptRecorder(std::shared_ptr<Log> log) : m_log(std::move(log)) {}
    void Show(Icon icon, const std::string& caption, const std::string& text) override
    {
        m_log->push_back({icon, caption, text});
    }
    Answer Ask(const std::string&, const std::string& text, bool) override
    {
        m_log->questions.push_back(text);
        return m_log->answer;
    }

private:
    std::shared_ptr<Log> m_log;
};
