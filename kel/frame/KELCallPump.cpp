// SPDX-License-Identifier: BSD-3-Clause
#include "kel/frame/KELCallPump.h"

#include "zed/call/TCallLoop.h"

#include <QSocketNotifier>

#include <algorithm>
#include <set>

KELCallPump::KELCallPump(QObject* parent) : QObject(parent)
{
    m_timer.setSingleShot(true);
    QObject::connect(&m_timer, &QTimer::timeout, this, [this] { Turn(); });
    Refresh();
}

KELCallPump::~KELCallPump() = default;

void KELCallPump::Turn()
{
    // A completion that runs an event loop of its own (a message box) lets
    // the notifiers fire again: that turn waits for this one to end.
    if (m_turning) {
        m_timer.start(0);
        return;
    }
    m_turning = true;
    ZEDGetCallLoop().ProcessReady();
    m_turning = false;
    Refresh();
    emit Turned();
}

void KELCallPump::Refresh()
{
    const ZedWaitSet set = ZEDGetCallLoop().GetWaitSet();
    const std::set<int> wanted(set.descriptors.begin(), set.descriptors.end());
    for (auto it = m_notifiers.begin(); it != m_notifiers.end();) {
        if (wanted.count(it->first)) {
            ++it;
            continue;
        }
        delete it->second;
        it = m_notifiers.erase(it);
    }
    for (int fd : wanted)
        if (!m_notifiers.count(fd)) {
            auto* notifier = new QSocketNotifier(fd, QSocketNotifier::Read, this);
            QObject::connect(notifier, &QSocketNotifier::activated, this, [this] { Turn(); });
            m_notifiers.emplace(fd, notifier);
        }
    if (set.deadline) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(*set.deadline - ZedWaitSet::Clock::now());
        m_timer.start(static_cast<int>(std::clamp<long long>(left.count(), 0, 24LL * 3600 * 1000)));
    } else {
        m_timer.stop();
    }
}
