#pragma once

#include "sources/SourceError.h"

#include <QCoreApplication>

namespace vantrel {

/** What went wrong between Vantrel and OmniFocus. Domain "AppleScriptError", the code counts kinds from 1. */
class AppleScriptError : public SourceError
{
    Q_DECLARE_TR_FUNCTIONS(vantrel::AppleScriptError)
public:
    enum class Kind {
        ScriptCompilationFailed, ///< detail: what the compiler said
        ExecutionFailed,         ///< any other failure of a script; detail: its message
        TaskNotFound,            ///< detail: the task id
        OmniFocusNotRunning,
        PermissionDenied,     ///< the automation permission is missing
        OmniFocusProRequired, ///< this edition of OmniFocus has no scripting
        UnknownError,
    };

    explicit AppleScriptError(Kind kind, const QString &detail = {});

    Kind kind() const { return m_kind; }
    const QString &detail() const { return m_detail; }

private:
    static QString describe(Kind kind, const QString &detail);

    Kind m_kind;
    QString m_detail;
};

} // namespace vantrel
