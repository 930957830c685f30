#pragma once

#include "feedback/DesktopAppearance.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QHash>

#include <optional>

namespace vantrel {

/**
 * The desktop's appearance by the settings portal (org.freedesktop.portal.Settings), which the larger
 * desktops answer; where nothing answers, the lightness of Qt's palette tells light from dark. GUI thread.
 */
class PortalAppearance final : public DesktopAppearance
{
    Q_OBJECT
public:
    /** Asks the portal, without waiting. */
    explicit PortalAppearance(const QDBusConnection &bus, QObject *parent = nullptr);

    /**
     * The first call waits for the portal's answer, at most a fifth of a second: a window that is drawn
     * light and turns dark a moment later flashes. A later answer comes by changed().
     */
    ColorScheme colorScheme() const override;
    /** Waits as colorScheme() does. */
    bool prefersReducedMotion() const override;

private Q_SLOTS:
    void handleSettingChanged(const QString &space, const QString &key, const QDBusVariant &value);

private:
    /** What the portal has told so far; nothing of it where the desktop has no preference. */
    struct Preferences
    {
        std::optional<ColorScheme> scheme;
        /** True under the names of those settings that ask for less motion. */
        QHash<QString, bool> lessMotion;
        friend bool operator==(const Preferences &, const Preferences &) = default;
    };

    bool eventFilter(QObject *watched, QEvent *event) override;

    QDBusPendingCallWatcher *ask(int timeoutMilliseconds);
    void handleFirstAnswer();
    void settle() const;
    void adopt(const std::optional<Preferences> &preferences);
    static void take(Preferences &preferences, const QString &key, const QVariant &value);
    static std::optional<Preferences> preferencesFrom(const QDBusPendingCall &answer);

    QDBusConnection m_bus;
    /** Asked by the constructor; nullptr without a bus. */
    QDBusPendingCallWatcher *m_firstQuestion = nullptr;
    mutable bool m_isSettled = false;
    mutable Preferences m_preferences;
};

} // namespace vantrel
