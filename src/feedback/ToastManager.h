#pragma once

#include "feedback/Announcer.h"
#include "foundations/Clock.h"

#include <QObject>

namespace vantrel {

/** Shows one passing notice at a time. GUI thread; owned by Services. */
class ToastManager : public QObject
{
    Q_OBJECT
public:
    enum class ToastStyle { Info, Success, Warning, Error };
    Q_ENUM(ToastStyle)

    /** How a toast is shown and spoken. */
    struct Options
    {
        double duration = 3.0;
        bool announceToVoiceOver = true;
        bool announceDismissal = false;
        AnnouncementPriority accessibilityPriority = AnnouncementPriority::Normal;
        /** Stays until the user dismisses it or another toast replaces it. */
        bool isPermanent = false;
    };

    ToastManager(Announcer &announcer, Clock &clock, QObject *parent = nullptr);

    bool isShowing() const { return m_isShowing; }
    QString message() const { return m_message; }
    ToastStyle style() const { return m_style; }

    /** Shows `message` in place of any toast on show, whose time ends. */
    void show(const QString &message, ToastStyle style) { show(message, style, Options()); }
    void show(const QString &message, ToastStyle style, const Options &options);
    /** The user's dismissal: hides the toast at once and says so. */
    void dismiss();

    /** "info.circle" and so on. */
    static QString symbol(ToastStyle style);
    /** "Info notification: " and so on, before the message in the banner's accessible name. */
    static QString labelPrefix(ToastStyle style);

Q_SIGNALS:
    void changed();

private:
    void hide();

    Announcer &m_announcer;
    Clock &m_clock;
    bool m_isShowing = false;
    QString m_message;
    ToastStyle m_style = ToastStyle::Info;
    /** Grows with each show, so that the end of an earlier toast's time finds that it is no longer meant. */
    int m_generation = 0;
};

} // namespace vantrel
