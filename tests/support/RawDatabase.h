#pragma once

#include <QStringList>

namespace vantrel::test {

/** What another program, or an older version of ours, could do to the database file. */
class RawDatabase
{
public:
    explicit RawDatabase(QString path) : m_path(std::move(path)) {}

    /** Runs statements that give no rows; false if one fails. */
    bool run(const QString &sql) const;
    /** The rows, each as its values joined by "|"; null is "NULL". */
    QStringList rows(const QString &sql) const;
    /** The answer of "PRAGMA integrity_check". */
    QString integrity() const { return rows(QStringLiteral("PRAGMA integrity_check")).join(u'\n'); }

private:
    QString m_path;
};

} // namespace vantrel::test
