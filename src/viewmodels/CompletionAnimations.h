#pragma once

#include "foundations/NotificationCenter.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <functional>

namespace vantrel {

class Announcer;
class UserDefaults;

/**
 * Lets the card of a task that has just been completed celebrate, if the user likes that. Says which card and
 * how; the card itself plays. Owned by BoardViewModel; GUI thread.
 */
class CompletionAnimations : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the board")
public:
    enum Type { SpinAndPulse, BounceAndGlow, ParticleBurst, CheckmarkConfetti, GlowPulse };
    Q_ENUM(Type)

    CompletionAnimations(NotificationCenter &notifications, const UserDefaults &defaults,
                         Announcer &announcer, QObject *parent = nullptr);

Q_SIGNALS:
    void wanted(const QString &taskId, vantrel::CompletionAnimations::Type type);

private:
    void handleCompletion(const Notification &notification);

    const UserDefaults &m_defaults;
    Announcer &m_announcer;
};

} // namespace vantrel
