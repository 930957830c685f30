#include "sources/omnifocus/AppleScriptError.h"

namespace vantrel {

AppleScriptError::AppleScriptError(Kind kind, const QString &detail)
    : SourceError(QStringLiteral("AppleScriptError"), static_cast<int>(kind) + 1, describe(kind, detail)),
      m_kind(kind),
      m_detail(detail)
{
}

QString AppleScriptError::describe(Kind kind, const QString &detail)
{
    switch (kind) {
    case Kind::ScriptCompilationFailed:
        return detail;
    case Kind::ExecutionFailed:
        return tr("OmniFocus could not carry out the request: %1").arg(detail);
    case Kind::TaskNotFound:
        return tr("OmniFocus does not know the task %1.").arg(detail);
    case Kind::OmniFocusNotRunning:
        return tr("OmniFocus isn't running.");
    case Kind::PermissionDenied:
        return tr("Vantrel does not have permission to control OmniFocus.");
    case Kind::OmniFocusProRequired:
        return tr("OmniFocus Pro is required for scripting.");
    case Kind::UnknownError:
        break;
    }
    return tr("OmniFocus reported an unknown error.");
}

} // namespace vantrel
