#pragma once

#include <QString>

#include <optional>
#include <vector>

namespace vantrel {

/** How a script's run ended. */
struct ScriptOutcome
{
    struct Failure
    {
        std::optional<int> number;
        QString message;
    };

    /** False if the source was rejected; nothing was run then. */
    bool isCompiled = true;
    std::optional<Failure> failure;
    /** The result as text, where it has such a form. */
    QString text;
    /** The members of a list result; nothing for a member without a text form. */
    std::vector<std::optional<QString>> items;
};

/** The platform's script service. A port. */
class ScriptRunner
{
public:
    ScriptRunner() = default;
    virtual ~ScriptRunner() = default;
    ScriptRunner(const ScriptRunner &) = delete;
    ScriptRunner &operator=(const ScriptRunner &) = delete;

    /** False where there is no script service, or nothing to talk to. */
    virtual bool isAvailable() const = 0;

    /** Compiles and runs `source`, blocking. Called on the script thread only, one script at a time. */
    virtual ScriptOutcome run(const QString &source) = 0;
};

} // namespace vantrel
