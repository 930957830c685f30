#pragma once

#include "sources/omnifocus/ScriptRunner.h"

namespace vantrel {

/** Stands where the platform has no script service: no script compiles. */
class UnavailableScriptRunner final : public ScriptRunner
{
public:
    bool isAvailable() const override { return false; }

    ScriptOutcome run(const QString &) override
    {
        ScriptOutcome outcome;
        outcome.isCompiled = false;
        return outcome;
    }
};

} // namespace vantrel
