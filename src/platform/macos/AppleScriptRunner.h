#pragma once

#include "sources/omnifocus/ScriptRunner.h"

namespace vantrel {

/** Scripts through NSAppleScript. Used on one thread, one script at a time, as that class demands. */
class AppleScriptRunner final : public ScriptRunner
{
public:
    bool isAvailable() const override { return true; }
    /**
     * Without OmniFocus the system would ask where it is as soon as a script that names it is compiled: then
     * nothing is compiled, and the answer is that it is not running.
     */
    ScriptOutcome run(const QString &source) override;
};

} // namespace vantrel
