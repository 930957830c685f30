#pragma once

#include "sources/SourceError.h"

#include <QString>

#include <exception>
#include <vector>

namespace vantrel {

/** What a failed fetch of tasks means to the user. A value. */
struct LoadFailure
{
    enum class Kind {
        Message,           ///< the error screen says `text`
        PermissionMissing, ///< the permission screen says `text`
        ProRequired,       ///< this edition of OmniFocus cannot be used; `text` says what is done instead
        Other,             ///< only for the log: the repository has told the user itself
    };

    Kind kind = Kind::Other;
    QString text;

    friend bool operator==(const LoadFailure &, const LoadFailure &) = default;
};

/**
 * Judges what a fetch has thrown. Of several causes the first one decides that means something of its own;
 * the others are in the repository's own report.
 */
LoadFailure judgeLoadFailure(const std::exception_ptr &error);

/** What the user is told of sources that failed while others gave their tasks; empty if none did. */
QString noticeOfMissingTasks(const std::vector<TaskRepositoryError::Cause> &failures);

} // namespace vantrel
