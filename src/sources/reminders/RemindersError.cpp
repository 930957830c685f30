#include "sources/reminders/RemindersError.h"

namespace vantrel {

RemindersError::RemindersError(Kind kind, const QString &detail)
    : SourceError(QStringLiteral("RemindersError"), static_cast<int>(kind) + 1, describe(kind, detail)),
      m_kind(kind)
{
}

QString RemindersError::describe(Kind kind, const QString &detail)
{
    switch (kind) {
    case Kind::SaveFailed:
        return tr("Failed to save changes to reminder: %1").arg(detail);
    case Kind::AccessDenied:
        return tr("Access to Reminders was denied. Please grant permission in System Settings.");
    case Kind::InsufficientAccess:
        return tr("Insufficient access to Reminders. Full access is required.");
    case Kind::UnknownAuthorizationStatus:
        return tr("Unknown authorization status for Reminders access.");
    case Kind::FetchFailed:
        break;
    }
    return tr("Failed to fetch reminders from the system.");
}

} // namespace vantrel
