#include "foundations/UserDefaults.h"

#include <QFile>
#include <QJsonDocument>
#include <QMutexLocker>

#include <cmath>
#include <utility>

namespace vantrel {

namespace {
constexpr auto DataMark = QLatin1StringView("$data");
constexpr double LargestExactInteger = 9007199254740992.0;
} // namespace

UserDefaults::UserDefaults(FileSaver &saver, QString path, QObject *parent)
    : QObject(parent), m_saver(saver), m_path(std::move(path))
{
    QFile file(m_path);
    if (!file.exists()) {
        return;
    }
    QJsonParseError error;
    QJsonDocument document;
    const bool isOpen = file.open(QIODevice::ReadOnly);
    if (isOpen) {
        document = QJsonDocument::fromJson(file.readAll(), &error);
    }
    if (isOpen && document.isObject()) {
        m_values = document.object();
        return;
    }
    const QString reason = isOpen ? error.errorString() : file.errorString();
    const FileOutcome kept = m_saver.keepAside(m_path);
    m_mustNotSave = !kept.isOk();
    report(kept.isOk()
               ? tr("The preferences could not be read (%1). A copy is kept as %2.").arg(reason, kept.path)
               : tr("The preferences could not be read (%1) and are left untouched.").arg(reason));
}

std::optional<bool> UserDefaults::boolean(QStringView key) const
{
    const QJsonValue value = m_values.value(key);
    return value.isBool() ? std::optional(value.toBool()) : std::nullopt;
}

std::optional<qint64> UserDefaults::integer(QStringView key) const
{
    const QJsonValue value = m_values.value(key);
    if (!value.isDouble()) {
        return std::nullopt;
    }
    const double number = value.toDouble();
    if (number != std::trunc(number) || std::abs(number) > LargestExactInteger) {
        return std::nullopt;
    }
    return static_cast<qint64>(number);
}

std::optional<double> UserDefaults::real(QStringView key) const
{
    const QJsonValue value = m_values.value(key);
    return value.isDouble() ? std::optional(value.toDouble()) : std::nullopt;
}

std::optional<QString> UserDefaults::text(QStringView key) const
{
    const QJsonValue value = m_values.value(key);
    return value.isString() ? std::optional(value.toString()) : std::nullopt;
}

std::optional<QByteArray> UserDefaults::data(QStringView key) const
{
    const QJsonObject wrapped = m_values.value(key).toObject();
    const QJsonValue encoded = wrapped.value(DataMark);
    if (wrapped.size() != 1 || !encoded.isString()) {
        return std::nullopt;
    }
    return QByteArray::fromBase64(encoded.toString().toLatin1());
}

void UserDefaults::set(QStringView key, bool value)
{
    store(key, value);
}

void UserDefaults::set(QStringView key, int value)
{
    store(key, value);
}

void UserDefaults::set(QStringView key, double value)
{
    store(key, value);
}

void UserDefaults::set(QStringView key, const QString &value)
{
    store(key, value);
}

void UserDefaults::set(QStringView key, const QByteArray &value)
{
    store(key, QJsonObject{{DataMark, QString::fromLatin1(value.toBase64())}});
}

void UserDefaults::remove(QStringView key)
{
    if (!m_values.contains(key)) {
        return;
    }
    m_values.remove(key);
    save();
    Q_EMIT valueChanged(key.toString());
}

void UserDefaults::store(QStringView key, const QJsonValue &value)
{
    if (m_values.contains(key) && m_values.value(key) == value) {
        return;
    }
    m_values.insert(key, value);
    save();
    Q_EMIT valueChanged(key.toString());
}

void UserDefaults::save()
{
    if (m_mustNotSave) {
        return;
    }
    const QMutexLocker lock(&m_mutex);
    if (!m_unwritten) {
        m_queue.async([this] { write(); });
    }
    m_unwritten = m_values;
}

void UserDefaults::write()
{
    const QJsonObject values = [this] {
        const QMutexLocker lock(&m_mutex);
        return *std::exchange(m_unwritten, std::nullopt);
    }();
    const FileOutcome outcome = m_saver.save(m_path, QJsonDocument(values).toJson(QJsonDocument::Indented));
    if (!outcome.isOk()) {
        report(outcome.error);
    }
}

void UserDefaults::waitUntilSaved()
{
    m_queue.sync([] {});
}

QString UserDefaults::problem() const
{
    const QMutexLocker lock(&m_mutex);
    return m_problem;
}

void UserDefaults::report(const QString &message)
{
    const QMutexLocker lock(&m_mutex);
    m_problem = message;
    QMetaObject::invokeMethod(
        this, [this, message] { Q_EMIT problemFound(message); }, Qt::QueuedConnection);
}

} // namespace vantrel
