#pragma once

#include "feedback/Announcer.h"

namespace vantrel {

/**
 * Speaks to the screen reader by the Announcement signal of the AT-SPI protocol, in the name of the window
 * that has the focus, over the connection that Qt holds to the accessibility bus. Does nothing where nobody
 * uses that bus. GUI thread.
 */
class AtSpiAnnouncementSink final : public AnnouncementSink
{
public:
    void announce(const QString &text, AnnouncementPriority priority) override;
};

} // namespace vantrel
