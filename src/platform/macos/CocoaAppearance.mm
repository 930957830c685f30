#include "platform/macos/CocoaAppearance.h"

#import <AppKit/AppKit.h>

namespace vantrel {

struct CocoaAppearance::Observers
{
    id theme;
    id motion;
};

CocoaAppearance::CocoaAppearance() : m_observers(std::make_unique<Observers>())
{
    // On the main queue: by then the application has its new appearance.
    const auto tell = ^(NSNotification *) {
      Q_EMIT changed();
    };
    m_observers->theme = [NSDistributedNotificationCenter.defaultCenter
        addObserverForName:@"AppleInterfaceThemeChangedNotification"
                    object:nil
                     queue:NSOperationQueue.mainQueue
                usingBlock:tell];
    m_observers->motion = [NSWorkspace.sharedWorkspace.notificationCenter
        addObserverForName:NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification
                    object:nil
                     queue:NSOperationQueue.mainQueue
                usingBlock:tell];
}

CocoaAppearance::~CocoaAppearance()
{
    [NSDistributedNotificationCenter.defaultCenter removeObserver:m_observers->theme];
    [NSWorkspace.sharedWorkspace.notificationCenter removeObserver:m_observers->motion];
}

DesktopAppearance::ColorScheme CocoaAppearance::colorScheme() const
{
    NSAppearanceName name = [NSApp.effectiveAppearance
        bestMatchFromAppearancesWithNames:@[ NSAppearanceNameAqua, NSAppearanceNameDarkAqua ]];
    return [name isEqualToString:NSAppearanceNameDarkAqua] ? ColorScheme::Dark : ColorScheme::Light;
}

bool CocoaAppearance::prefersReducedMotion() const
{
    return NSWorkspace.sharedWorkspace.accessibilityDisplayShouldReduceMotion;
}

} // namespace vantrel
