#pragma once

#include "foundations/FileSaver.h"

#include <QJsonObject>
#include <QObject>
#include <QStringView>

#include <optional>

namespace vantrel {

/**
 * The user's preferences: a small typed store in one JSON file.
 *
 * A value keeps the type it was written with, so a reader can tell a boolean from a text of the same look;
 * numbers are numbers, with or without fraction. Read once at construction, written whole and durably at each
 * change. A file that cannot be read is kept aside under "{name}.unreadable-{time}" before the first write.
 * GUI thread; owned by Services.
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
    QString problem() const { return m_problem; }

Q_SIGNALS:
    void valueChanged(const QString &key);
    /** The file could not be read or written; `message` names it and the reason. */
    void problemFound(const QString &message);

private:
    void store(QStringView key, const QJsonValue &value);
    void save();
    void report(const QString &message);

    FileSaver &m_saver;
    QString m_path;
    QJsonObject m_values;
    QString m_problem;
    bool m_mustNotSave = false;
};

} // namespace vantrel
