// SPDX-License-Identifier: BSD-3-Clause
// KEL's tests run with a real (offscreen) QApplication, as a host has one.

#include "kel/frame/KELPrompt.h"

#include <QApplication>

#include <gtest/gtest.h>

#include <cstdio>

namespace {

// No test may ever wait for a person: message boxes go to standard error.
class NonBlockingPrompt : public KELPrompt {
public:
    void Show(Icon, const std::string& caption, const std::string& text) override
    {
        std::fprintf(stderr, "[message box] %s: %s\n", caption.c_str(), text.c_str());
    }
};

}  // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    KELPrompt::Install(std::make_unique<NonBlockingPrompt>());
    ::testing::InitGoogleTest(&argc, argv);
    const int failed = RUN_ALL_TESTS();
    // What the last test left queued (an idle pass, a deferred delete) runs
    // now, while its objects are still there, not never.
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return failed;
}
