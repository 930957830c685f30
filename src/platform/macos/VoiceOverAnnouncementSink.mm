#include "platform/macos/VoiceOverAnnouncementSink.h"

#import <AppKit/AppKit.h>

namespace vantrel {

void VoiceOverAnnouncementSink::announce(const QString &text, AnnouncementPriority priority)
{
    NSWindow *window = NSApp.mainWindow;
    if (!window) {
        return;
    }
    const NSAccessibilityPriorityLevel level =
        priority == AnnouncementPriority::High ? NSAccessibilityPriorityHigh : NSAccessibilityPriorityMedium;
    NSDictionary<NSAccessibilityNotificationUserInfoKey, id> *details = @{
        NSAccessibilityAnnouncementKey : text.toNSString(),
        NSAccessibilityPriorityKey : @(level),
    };
    NSAccessibilityPostNotificationWithUserInfo(window, NSAccessibilityAnnouncementRequestedNotification,
                                                details);
}

} // namespace vantrel
