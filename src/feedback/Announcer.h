#pragma once

#include "foundations/Clock.h"

#include <QObject>
#include <QStringList>

namespace vantrel {

enum class AnnouncementPriority { Normal, High };

/** The platform's way to speak to a screen reader. A port. */
class AnnouncementSink
{
public:
    AnnouncementSink() = default;
    virtual ~AnnouncementSink() = default;
    Q_DISABLE_COPY_MOVE(AnnouncementSink)

    virtual void announce(const QString &text, AnnouncementPriority priority) = 0;
};

/**
 * Speaks to the screen reader, and remembers the last things said so that they can be read again. GUI thread;
 * owned by Services.
 */
class Announcer : public QObject
{
    Q_OBJECT
public:
    Announcer(AnnouncementSink &sink, Clock &clock, QObject *parent = nullptr);

    void announce(const QString &text, AnnouncementPriority priority = AnnouncementPriority::Normal);
    void announceAfter(double seconds, const QString &text,
                       AnnouncementPriority priority = AnnouncementPriority::Normal);

    /** The last 100 texts, oldest first. */
    const QStringList &history() const { return m_history; }

private:
    AnnouncementSink &m_sink;
    Clock &m_clock;
    QStringList m_history;
};

} // namespace vantrel
