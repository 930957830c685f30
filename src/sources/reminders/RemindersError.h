#pragma once

#include "sources/SourceError.h"

#include <QCoreApplication>

namespace vantrel {

/** What went wrong with Reminders. Domain "RemindersError", the code counts kinds from 1. */
class RemindersError : public SourceError
{
    Q_DECLARE_TR_FUNCTIONS(vantrel::RemindersError)
public:
    enum class Kind {
        SaveFailed, ///< detail: the reason
        AccessDenied,
        InsufficientAccess,
        UnknownAuthorizationStatus,
        FetchFailed,
    };

    explicit RemindersError(Kind kind, const QString &detail = {});

    Kind kind() const { return m_kind; }

private:
    static QString describe(Kind kind, const QString &detail);

    Kind m_kind;
};

} // namespace vantrel
