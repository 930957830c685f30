#pragma once

#include <QMetaType>
#include <QString>

namespace vantrel {

/** A failure of storage that the user must learn of. */
struct StorageProblem
{
    enum class Kind {
        FolderNotWritable,       ///< the application directory cannot be made or written to
        DatabaseNotOpened,       ///< nothing is stored in this run
        DatabaseDamaged,         ///< the damaged file was moved aside and a new one begun
        WriteFailed,             ///< a change is not stored yet; it is tried again
        ConfigurationUnreadable, ///< defaults take over; the file is kept aside
        ConfigurationNotSaved,   ///< the change lives only in this run
    };

    Kind kind = Kind::WriteFailed;
    /** For the user: names the file and the reason. */
    QString message;
    /** The technical cause as the log has it; may be empty. */
    QString detail;
    /** True if the condition lasts until the program is started again. */
    bool isPermanent = false;

    friend bool operator==(const StorageProblem &, const StorageProblem &) = default;
};

} // namespace vantrel

Q_DECLARE_METATYPE(vantrel::StorageProblem)
