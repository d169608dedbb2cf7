// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// The widget benchmarks need a QApplication; the benchmark's own main has
// none. Made once, headless unless the environment says otherwise.

#include <QApplication>

inline void EnsureApplication()
{
    static int argc = 1;
    static char name[] = "kel_bench";
    static char* argv[] = {name, nullptr};
    if (QApplication::instance())
        return;
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // Never destroyed: at exit, Qt's own registries (of input devices, made
    // when a shown window first meets the pointer) may already be gone.
    static QApplication* application = new QApplication(argc, argv);
    (void)application;
}
