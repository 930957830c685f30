#pragma once

#include "foundations/FileSaver.h"
#include "foundations/SerialQueue.h"

#include <QJsonObject>
#include <QMutex>
#include <QObject>
#include <QStringView>

#include <optional>

namespace vantrel {

/**
 * The user's preferences: a small typed store in one JSON file.
 *
 * A value keeps the type it was written with, so a reader can tell a boolean from a text of the same look;
 * numbers are numbers, with or without fraction. Read once at construction. A change is written at once,
 * whole and durably, but on a thread of its own: changes made meanwhile share the next write, and the
 * destructor waits for the last one. A file that cannot be read is kept aside under
 * "{name}.unreadable-{time}" before the first write. GUI thread; owned by Services.
 */
class UserDefaults : public QObject
{
    Q_OBJECT
public:
    UserDefaults(FileSaver &saver, QString path, QObject *parent = nullptr);

    /** True if `key` is set, to a value of whatever type. */
    bool contains(QStringView key) const { return m_values.contains(key); }

    /** The value of `key` if it is of that type; nothing if it is unset or of another type. */
    std::optional<bool> boolean(QStringView key) const;
    /** A number without fraction. */
    std::optional<qint64> integer(QStringView key) const;
    std::optional<double> real(QStringView key) const;
    std::optional<QString> text(QStringView key) const;
    std::optional<QByteArray> data(QStringView key) const;

    void set(QStringView key, bool value);
    void set(QStringView key, int value);
    void set(QStringView key, double value);
    void set(QStringView key, const QString &value);
    void set(QStringView key, const QByteArray &value);
    void set(QStringView key, const char *value) = delete;
    void remove(QStringView key);

    /** What went wrong with the file so far, for the user; empty when all is well. */
    QString problem() const;
    /** Writes that are not finished. */
    qsizetype pendingJobs() const { return m_queue.waitingJobs(); }
    /** Blocks until all that was set so far is written, or could not be. */
    void waitUntilSaved();

Q_SIGNALS:
    void valueChanged(const QString &key);
    /** The file could not be read or written; `message` names it and the reason. */
    void problemFound(const QString &message);

private:
    void store(QStringView key, const QJsonValue &value);
    void save();
    /** On the queue. */
    void write();
    /** Any thread. */
    void report(const QString &message);

    FileSaver &m_saver;
    QString m_path;
    QJsonObject m_values;
    bool m_mustNotSave = false;
    mutable QMutex m_mutex;
    QString m_problem;
    /** What the next write takes; nothing when none is under way. */
    std::optional<QJsonObject> m_unwritten;
    /** Last: it ends before what its jobs use. */
    SerialQueue m_queue{"com.vantrel.defaults"};
};

} // namespace vantrel
