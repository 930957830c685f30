#pragma once

#include "sources/SourceError.h"

namespace vantrel {

/** What the AppleScript bridge reports. Domain "AppleScriptError", the kind as the code. */
class AppleScriptError : public SourceError
{
public:
    enum class Kind {
        ScriptCompilationFailed,
        ExecutionFailed,
        TaskNotFound,
        OmniFocusNotRunning,
        PermissionDenied, ///< the user has not allowed automation; asking again may have changed that
        OmniFocusProRequired,
        UnknownError,
    };

    AppleScriptError(Kind kind, const QString &message)
        : SourceError(QStringLiteral("AppleScriptError"), static_cast<int>(kind), message), m_kind(kind)
    {
    }

    Kind kind() const { return m_kind; }

private:
    Kind m_kind;
};

} // namespace vantrel
