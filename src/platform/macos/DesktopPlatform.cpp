#include "platform/DesktopPlatform.h"

#include "platform/macos/AppleScriptRunner.h"
#include "platform/macos/CocoaAppearance.h"
#include "platform/macos/EventKitReminderStore.h"
#include "platform/macos/PasteboardClipboard.h"
#include "platform/macos/VoiceOverAnnouncementSink.h"
#include "platform/qt/QtScreen.h"
#include "platform/qt/QtUrlOpener.h"
#include "platform/qt/SoundPlayers.h"

namespace vantrel {

DesktopPlatform makeDesktopPlatform()
{
    return {.family = DesktopFamily::Mac,
            .announcements = std::make_unique<VoiceOverAnnouncementSink>(),
            .sounds = makeSoundPlayer(),
            .appearance = std::make_unique<CocoaAppearance>(),
            .clipboard = std::make_unique<PasteboardClipboard>(),
            .urls = std::make_unique<QtUrlOpener>(),
            .screen = std::make_unique<QtScreen>(),
            .scripts = std::make_unique<AppleScriptRunner>(),
            .reminders = std::make_unique<EventKitReminderStore>()};
}

} // namespace vantrel
