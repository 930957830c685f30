#include "platform/macos/PasteboardClipboard.h"

#import <AppKit/AppKit.h>

namespace vantrel {

bool PasteboardClipboard::setText(const QString &text)
{
    NSPasteboard *pasteboard = NSPasteboard.generalPasteboard;
    [pasteboard clearContents];
    return [pasteboard setString:text.toNSString() forType:NSPasteboardTypeString];
}

QString PasteboardClipboard::text() const
{
    return QString::fromNSString([NSPasteboard.generalPasteboard stringForType:NSPasteboardTypeString]);
}

} // namespace vantrel
