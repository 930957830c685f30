#include "platform/macos/AppleScriptRunner.h"

#include "sources/omnifocus/OmniFocusScripts.h"

#import <CoreServices/CoreServices.h>
#import <Foundation/Foundation.h>

namespace vantrel {

namespace {

constexpr int NotRunningNumber = -600;

bool isOmniFocusInstalled()
{
    NSString *identifier = omnifocus::BundleId.toString().toNSString();
    CFArrayRef places = LSCopyApplicationURLsForBundleIdentifier((__bridge CFStringRef)identifier, nullptr);
    if (!places) {
        return false;
    }
    CFRelease(places);
    return true;
}

ScriptOutcome failed(std::optional<int> number, const QString &message)
{
    ScriptOutcome outcome;
    outcome.failure = ScriptOutcome::Failure{number, message};
    return outcome;
}

ScriptOutcome failedWith(NSDictionary<NSString *, id> *error)
{
    NSNumber *number = error[NSAppleScriptErrorNumber];
    NSString *message = error[NSAppleScriptErrorMessage];
    return failed(number ? std::optional<int>(number.intValue) : std::nullopt,
                  QString::fromNSString(message));
}

ScriptOutcome notCompiled()
{
    ScriptOutcome outcome;
    outcome.isCompiled = false;
    return outcome;
}

ScriptOutcome answered(NSAppleEventDescriptor *result)
{
    ScriptOutcome outcome;
    outcome.text = QString::fromNSString(result.stringValue);
    for (NSInteger i = 1; i <= result.numberOfItems; ++i) {
        NSString *text = [result descriptorAtIndex:i].stringValue;
        outcome.items.push_back(text ? std::optional(QString::fromNSString(text)) : std::nullopt);
    }
    return outcome;
}

} // namespace

ScriptOutcome AppleScriptRunner::run(const QString &source)
{
    @autoreleasepool {
        if (!isOmniFocusInstalled()) {
            return failed(NotRunningNumber, QStringLiteral("OmniFocus is not installed."));
        }
        NSAppleScript *script = [[NSAppleScript alloc] initWithSource:source.toNSString()];
        NSDictionary<NSString *, id> *error = nil;
        if (!script || ![script compileAndReturnError:&error]) {
            return notCompiled();
        }
        NSAppleEventDescriptor *result = [script executeAndReturnError:&error];
        return result ? answered(result) : failedWith(error);
    }
}

} // namespace vantrel
