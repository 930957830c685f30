#pragma once

#include "feedback/Announcer.h"

namespace vantrel {

/** Speaks through VoiceOver, in the name of the main window. Silent while there is none. GUI thread. */
class VoiceOverAnnouncementSink final : public AnnouncementSink
{
public:
    void announce(const QString &text, AnnouncementPriority priority) override;
};

} // namespace vantrel
