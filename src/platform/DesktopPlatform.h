#pragma once

#include "feedback/Announcer.h"
#include "feedback/DesktopAppearance.h"
#include "feedback/DesktopPorts.h"
#include "feedback/SoundManager.h"
#include "sources/omnifocus/ScriptRunner.h"
#include "sources/reminders/ReminderStore.h"

#include <memory>

namespace vantrel {

/** The ports of the desktop that this program was built for. Owned by main(), and outlives Services. */
struct DesktopPlatform
{
    DesktopFamily family = DesktopFamily::Linux;
    std::unique_ptr<AnnouncementSink> announcements;
    std::unique_ptr<SoundPlayer> sounds;
    std::unique_ptr<DesktopAppearance> appearance;
    std::unique_ptr<Clipboard> clipboard;
    std::unique_ptr<UrlOpener> urls;
    std::unique_ptr<Screen> screen;
    std::unique_ptr<ScriptRunner> scripts;
    /** nullptr where the platform has none of its own. */
    std::unique_ptr<ReminderStore> reminders;
};

/** Needs the QGuiApplication. Each folder of a platform has its own. */
DesktopPlatform makeDesktopPlatform();

} // namespace vantrel
