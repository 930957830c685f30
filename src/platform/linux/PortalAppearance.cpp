#include "platform/linux/PortalAppearance.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QEvent>
#include <QGuiApplication>
#include <QPalette>

namespace vantrel {

namespace {

constexpr int FirstAnswerMilliseconds = 200;
constexpr int LateAnswerMilliseconds = 25000;

const QString PortalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString PortalInterface = QStringLiteral("org.freedesktop.portal.Settings");

// The settings that matter, and where they lie. No two have the same name.
const QString ColorSchemeKey = QStringLiteral("color-scheme");
const QString ReducedMotionKey = QStringLiteral("reduced-motion");
const QString GnomeAnimationsKey = QStringLiteral("enable-animations");
const QString KdeAnimationsKey = QStringLiteral("AnimationDurationFactor");

QStringList settingSpaces()
{
    return {QStringLiteral("org.freedesktop.appearance"), QStringLiteral("org.gnome.desktop.interface"),
            QStringLiteral("org.kde.kdeglobals.KDE")};
}

DesktopAppearance::ColorScheme paletteScheme()
{
    return QGuiApplication::palette().color(QPalette::Window).lightness() < 128
               ? DesktopAppearance::ColorScheme::Dark
               : DesktopAppearance::ColorScheme::Light;
}

/** What ReadAll answers, a{sa{sv}}. */
using SettingsBySpace = QMap<QString, QVariantMap>;

} // namespace

PortalAppearance::PortalAppearance(const QDBusConnection &bus, QObject *parent)
    : DesktopAppearance(parent), m_bus(bus)
{
    QCoreApplication::instance()->installEventFilter(this);
    if (m_bus.isConnected()) {
        // No service name: with one Qt would first ask, and wait, for who owns it.
        m_bus.connect(QString(), PortalPath, PortalInterface, QStringLiteral("SettingChanged"), this,
                      SLOT(handleSettingChanged(QString, QString, QDBusVariant)));
        m_firstQuestion = ask(FirstAnswerMilliseconds);
        connect(m_firstQuestion, &QDBusPendingCallWatcher::finished, this,
                &PortalAppearance::handleFirstAnswer);
    }
}

DesktopAppearance::ColorScheme PortalAppearance::colorScheme() const
{
    settle();
    return m_preferences.scheme.value_or(paletteScheme());
}

bool PortalAppearance::prefersReducedMotion() const
{
    settle();
    return m_preferences.lessMotion.values().contains(true);
}

QDBusPendingCallWatcher *PortalAppearance::ask(int timeoutMilliseconds)
{
    QDBusMessage question =
        QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.portal.Desktop"), PortalPath,
                                       PortalInterface, QStringLiteral("ReadAll"));
    question << settingSpaces();
    return new QDBusPendingCallWatcher(m_bus.asyncCall(question, timeoutMilliseconds), this);
}

void PortalAppearance::settle() const
{
    if (m_firstQuestion && !m_isSettled) {
        m_isSettled = true;
        m_firstQuestion->waitForFinished();
        m_preferences = preferencesFrom(*m_firstQuestion).value_or(Preferences());
    }
}

void PortalAppearance::handleFirstAnswer()
{
    m_isSettled = true;
    if (m_firstQuestion->error().type() != QDBusError::NoReply) {
        adopt(preferencesFrom(*m_firstQuestion));
        return;
    }
    // The portal may be about to start, because of this very question.
    QDBusPendingCallWatcher *question = ask(LateAnswerMilliseconds);
    connect(question, &QDBusPendingCallWatcher::finished, this, [this, question] {
        question->deleteLater();
        adopt(preferencesFrom(*question));
    });
}

void PortalAppearance::adopt(const std::optional<Preferences> &preferences)
{
    if (preferences && *preferences != m_preferences) {
        m_preferences = *preferences;
        Q_EMIT changed();
    }
}

void PortalAppearance::handleSettingChanged(const QString &space, const QString &key,
                                            const QDBusVariant &value)
{
    if (!settingSpaces().contains(space)) {
        return;
    }
    Preferences preferences = m_preferences;
    take(preferences, key, value.variant());
    adopt(preferences);
}

void PortalAppearance::take(Preferences &preferences, const QString &key, const QVariant &value)
{
    if (key == ColorSchemeKey) {
        switch (value.toUInt()) {
        case 1:
            preferences.scheme = ColorScheme::Dark;
            break;
        case 2:
            preferences.scheme = ColorScheme::Light;
            break;
        default:
            preferences.scheme.reset();
        }
    } else if (key == ReducedMotionKey) {
        preferences.lessMotion[key] = value.toUInt() == 1;
    } else if (key == GnomeAnimationsKey) {
        preferences.lessMotion[key] = !value.toBool();
    } else if (key == KdeAnimationsKey) {
        bool isNumber = false;
        preferences.lessMotion[key] = value.toDouble(&isNumber) == 0.0 && isNumber;
    }
}

std::optional<PortalAppearance::Preferences> PortalAppearance::preferencesFrom(const QDBusPendingCall &answer)
{
    if (!answer.isFinished() || answer.isError() || answer.reply().arguments().isEmpty()) {
        return std::nullopt;
    }
    const auto spaces = qdbus_cast<SettingsBySpace>(answer.reply().arguments().constFirst());
    Preferences preferences;
    for (const QVariantMap &settings : spaces) {
        for (auto setting = settings.cbegin(); setting != settings.cend(); ++setting) {
            take(preferences, setting.key(), setting.value());
        }
    }
    return preferences;
}

bool PortalAppearance::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::ApplicationPaletteChange && !m_preferences.scheme) {
        Q_EMIT changed();
    }
    return DesktopAppearance::eventFilter(watched, event);
}

} // namespace vantrel
