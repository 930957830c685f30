#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QVariantMap>

#include <functional>
#include <memory>
#include <vector>

namespace vantrel {

/** The text under which a notification is sent. Only constants of NotificationNames.h are of this type. */
struct NotificationName
{
    QStringView text;
    friend bool operator==(NotificationName a, NotificationName b) { return a.text == b.text; }
};

/** What an observer receives. */
struct Notification
{
    NotificationName name;
    QVariant object;
    QVariantMap userInfo;
};

/**
 * Named notifications, delivered synchronously on the posting thread, which must be the GUI thread.
 *
 * Observers are called in the order in which they registered. A handler may post, add or remove observers: an
 * observer added during a post is not called for it, one removed during a post is not called any more. Owned
 * by Services.
 */
class NotificationCenter
{
public:
    using Handler = std::function<void(const Notification &)>;

    NotificationCenter() = default;
    Q_DISABLE_COPY_MOVE(NotificationCenter)

    /** Calls `handler` for each post of `name` until `owner` is destroyed or removed. */
    void observe(NotificationName name, QObject *owner, Handler handler);

    /** Ends all observations of `owner`. */
    void removeObserver(const QObject *owner);

    void post(NotificationName name, const QVariant &object = {}, const QVariantMap &userInfo = {});

private:
    struct Observer
    {
        QPointer<QObject> owner;
        Handler handler;
        bool isRemoved = false;
    };
    using Observers = std::vector<std::shared_ptr<Observer>>;

    QHash<QStringView, Observers> m_observers;
};

} // namespace vantrel
