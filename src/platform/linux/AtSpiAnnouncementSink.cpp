#include "platform/linux/AtSpiAnnouncementSink.h"

#include "foundations/Log.h"

#include <QAccessible>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QWindow>

namespace vantrel {

namespace {

/** The values of AtspiLive, which the signal carries as its first detail. */
constexpr int PoliteLive = 1;
constexpr int AssertiveLive = 2;

/** Where Qt's bridge shows the object to the bus. */
QString accessiblePath(QObject *object)
{
    const QString root = QStringLiteral("/org/a11y/atspi/accessible/");
    QAccessibleInterface *accessible = object ? QAccessible::queryAccessibleInterface(object) : nullptr;
    return accessible ? root + QString::number(QAccessible::uniqueId(accessible))
                      : root + QStringLiteral("root");
}

} // namespace

void AtSpiAnnouncementSink::announce(const QString &text, AnnouncementPriority priority)
{
    // Qt has no call for announcements before 6.8. Its bridge registers its connection under this name.
    QDBusConnection bus(QStringLiteral("a11y"));
    if (!QAccessible::isActive() || !bus.isConnected()) {
        return;
    }
    QDBusMessage message = QDBusMessage::createSignal(accessiblePath(QGuiApplication::focusWindow()),
                                                      QStringLiteral("org.a11y.atspi.Event.Object"),
                                                      QStringLiteral("Announcement"));
    message << QString() << (priority == AnnouncementPriority::High ? AssertiveLive : PoliteLive) << 0
            << QVariant::fromValue(QDBusVariant(text)) << QVariantMap();
    if (!bus.send(message)) {
        log::warning(u"The screen reader could not be told: " + bus.lastError().message());
    }
}

} // namespace vantrel
