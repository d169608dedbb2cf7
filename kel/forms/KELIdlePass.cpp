// SPDX-License-Identifier: BSD-3-Clause
#include "kel/forms/KELIdlePass.h"

#include <QApplication>
#include <QEvent>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <map>

namespace {

class IdleDriver : public QObject {
public:
    std::map<const void*, KELIdlePass::Update> updates;
    bool pending = false;

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        switch (event->type()) {
        case QEvent::KeyRelease:
        case QEvent::MouseButtonRelease:
        case QEvent::FocusIn:
        case QEvent::Wheel: Schedule(); break;
        default: break;
        }
        return QObject::eventFilter(watched, event);
    }

    void Schedule()
    {
        if (pending)
            return;
        pending = true;
        QTimer::singleShot(0, this, [this] {
            pending = false;
            KELIdlePass::RunNow();
        });
    }
};

IdleDriver* Driver(bool create)
{
    static QPointer<IdleDriver> driver;
    if (!driver && create && QCoreApplication::instance()) {
        driver = new IdleDriver;
        driver->setParent(QCoreApplication::instance());
        QCoreApplication::instance()->installEventFilter(driver);
    }
    return driver;
}

}  // namespace

void KELIdlePass::Register(const void* key, Update update)
{
    if (IdleDriver* driver = Driver(true))
        driver->updates[key] = std::move(update);
}

void KELIdlePass::Unregister(const void* key)
{
    if (IdleDriver* driver = Driver(false))
        driver->updates.erase(key);
}

void KELIdlePass::RunNow()
{
    IdleDriver* driver = Driver(false);
    if (!driver)
        return;
    // A copy: an update may open or close a form.
    const auto updates = driver->updates;
    for (const auto& [key, update] : updates)
        if (driver->updates.count(key))
            update();
}
