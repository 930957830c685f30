#include "foundations/NotificationCenter.h"

#include <QCoreApplication>
#include <QThread>

namespace vantrel {

void NotificationCenter::observe(NotificationName name, QObject *owner, Handler handler)
{
    Observers &observers = m_observers[name.text];
    std::erase_if(observers, [](const auto &observer) { return observer->owner.isNull(); });
    observers.push_back(std::make_shared<Observer>(Observer{owner, std::move(handler), false}));
}

void NotificationCenter::removeObserver(const QObject *owner)
{
    for (Observers &observers : m_observers) {
        std::erase_if(observers, [owner](const auto &observer) {
            if (observer->owner != owner) return false;
            observer->isRemoved = true;
            return true;
        });
    }
}

void NotificationCenter::post(NotificationName name, const QVariant &object, const QVariantMap &userInfo)
{
    Q_ASSERT(!QCoreApplication::instance() ||
             QThread::currentThread() == QCoreApplication::instance()->thread());
    const Observers snapshot = m_observers.value(name.text);
    const Notification notification{name, object, userInfo};
    for (const auto &observer : snapshot) {
        if (!observer->isRemoved && observer->owner) {
            observer->handler(notification);
        }
    }
}

} // namespace vantrel
