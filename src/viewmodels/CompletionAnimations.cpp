#include "viewmodels/CompletionAnimations.h"

#include "feedback/Announcer.h"
#include "foundations/DefaultsKeys.h"
#include "foundations/NotificationNames.h"
#include "foundations/UserDefaults.h"

#include <QMetaEnum>
#include <QRandomGenerator>

namespace vantrel {

namespace {

/** Behind the words about the move that completed the task. */
constexpr double AnnouncementDelay = 0.1;

} // namespace

CompletionAnimations::CompletionAnimations(NotificationCenter &notifications, const UserDefaults &defaults,
                                           Announcer &announcer, QObject *parent)
    : QObject(parent), m_defaults(defaults), m_announcer(announcer)
{
    notifications.observe(notifications::TaskCompletionAnimation, this,
                          [this](const Notification &notification) { handleCompletion(notification); });
}

void CompletionAnimations::handleCompletion(const Notification &notification)
{
    if (!m_defaults.boolean(keys::CelebrateCompletion).value_or(true)) {
        return;
    }
    const QVariant object = notification.object;
    const QString taskId = object.isValid()
                               ? object.toString()
                               : notification.userInfo.value(QStringLiteral("taskId")).toString();
    const QMetaEnum types = QMetaEnum::fromType<Type>();
    const QVariant asked = notification.userInfo.value(QStringLiteral("type"));
    const int type = asked.isValid() ? asked.toInt() : QRandomGenerator::global()->bounded(types.keyCount());
    if (!types.valueToKey(type)) {
        return;
    }
    m_announcer.announceAfter(AnnouncementDelay, tr("Task completed"));
    if (type == ParticleBurst) m_announcer.announceAfter(AnnouncementDelay, tr("Celebration"));
    Q_EMIT wanted(taskId, static_cast<Type>(type));
}

} // namespace vantrel
