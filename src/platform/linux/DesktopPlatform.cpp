#include "platform/DesktopPlatform.h"

#include "platform/linux/AtSpiAnnouncementSink.h"
#include "platform/linux/PortalAppearance.h"
#include "platform/qt/QtClipboard.h"
#include "platform/qt/QtScreen.h"
#include "platform/qt/QtUrlOpener.h"
#include "platform/qt/SoundPlayers.h"
#include "sources/omnifocus/UnavailableScriptRunner.h"

namespace vantrel {

DesktopPlatform makeDesktopPlatform()
{
    return {.family = DesktopFamily::Linux,
            .announcements = std::make_unique<AtSpiAnnouncementSink>(),
            .sounds = makeSoundPlayer(),
            .appearance = std::make_unique<PortalAppearance>(QDBusConnection::sessionBus()),
            .clipboard = std::make_unique<QtClipboard>(),
            .urls = std::make_unique<QtUrlOpener>(),
            .screen = std::make_unique<QtScreen>(),
            .scripts = std::make_unique<UnavailableScriptRunner>(),
            .reminders = nullptr};
}

} // namespace vantrel
