#include "feedback/Announcer.h"

namespace vantrel {

namespace {
constexpr qsizetype KeptAnnouncements = 100;
} // namespace

Announcer::Announcer(AnnouncementSink &sink, Clock &clock, QObject *parent)
    : QObject(parent), m_sink(sink), m_clock(clock)
{
}

void Announcer::announce(const QString &text, AnnouncementPriority priority)
{
    m_history.append(text);
    if (m_history.size() > KeptAnnouncements) {
        m_history.removeFirst();
    }
    m_sink.announce(text, priority);
}

void Announcer::announceAfter(double seconds, const QString &text, AnnouncementPriority priority)
{
    m_clock.after(seconds, this, [this, text, priority] { announce(text, priority); });
}

} // namespace vantrel
