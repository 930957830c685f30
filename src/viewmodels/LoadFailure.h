#pragma once

#include <QString>

#include <exception>

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

} // namespace vantrel
