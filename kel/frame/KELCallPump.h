// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <QObject>
#include <QTimer>

#include <map>

class QSocketNotifier;

/// The one place where the access library's call loop meets Qt's event loop:
/// a socket notifier for each descriptor the loop waits on and a timer for
/// its next deadline. When one fires, the loop runs what is ready and its wait
/// set is taken again (a call just started makes the loop's own wake
/// descriptor readable, so new descriptors are never missed). The
/// application object makes one while a Qt application runs.
class KEL_EXPORT KELCallPump : public QObject {
    Q_OBJECT
public:
    explicit KELCallPump(QObject* parent = nullptr);
    ~KELCallPump() override;

    /// Takes the loop's wait set again.
    void Refresh();

signals:
    /// The loop has run what was ready: answers, and news modules read
    /// meanwhile (notifications that arrived), are in.
    void Turned();

private:
    void Turn();

    std::map<int, QSocketNotifier*> m_notifiers;  // children of the pump
    QTimer m_timer;
    bool m_turning = false;
};
