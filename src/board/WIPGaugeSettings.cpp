#include "board/WIPGaugeSettings.h"

#include "foundations/DefaultsKeys.h"
#include "foundations/Log.h"
#include "foundations/UserDefaults.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace vantrel {

namespace {

constexpr QStringView IsEnabledKey = u"isEnabled";
constexpr QStringView WarnThresholdKey = u"warnThreshold";
constexpr QStringView MaxThresholdKey = u"maxThreshold";
constexpr QStringView IncludeQueueColumnsKey = u"includeQueueColumns";

QString text(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

std::optional<bool> boolean(const QJsonObject &record, QStringView key)
{
    const QJsonValue value = record.value(key);
    return value.isBool() ? std::optional(value.toBool()) : std::nullopt;
}

/** A whole number that an int holds. */
std::optional<int> wholeNumber(const QJsonObject &record, QStringView key)
{
    const double number = record.value(key).toDouble(std::numeric_limits<double>::quiet_NaN());
    const bool fits = number >= std::numeric_limits<int>::min() && number <= std::numeric_limits<int>::max();
    if (!fits || number != static_cast<int>(number)) {
        return std::nullopt;
    }
    return static_cast<int>(number);
}

} // namespace

WIPGaugeSettings::WIPGaugeSettings(UserDefaults &defaults, QObject *parent)
    : QObject(parent), m_defaults(defaults)
{
    if (!m_defaults.contains(keys::WIPGaugeSettings)) {
        log::info(QStringLiteral("No saved WIP gauge settings found, using defaults"));
        save();
    } else if (!load()) {
        // What is stored stays until the user changes a setting: it may be another version's.
        log::warning(QStringLiteral("Saved WIP gauge settings cannot be read, using defaults"));
    }
    log::info(u"Loaded WIP gauge settings: enabled=" + text(m_isEnabled) + u", warn=" +
              QString::number(m_thresholds.warn) + u", max=" + QString::number(m_thresholds.max) +
              u", includeQueue=" + text(m_includeQueueColumns));
}

void WIPGaugeSettings::setEnabled(bool isEnabled)
{
    if (m_isEnabled != isEnabled) {
        m_isEnabled = isEnabled;
        finishChange();
    }
}

void WIPGaugeSettings::setWarnThreshold(int threshold)
{
    if (m_thresholds.warn != threshold) {
        m_thresholds = {threshold, std::max(threshold, m_thresholds.max)};
        finishChange();
    }
}

void WIPGaugeSettings::setMaxThreshold(int threshold)
{
    if (m_thresholds.max != threshold) {
        m_thresholds = {std::min(threshold, m_thresholds.warn), threshold};
        finishChange();
    }
}

void WIPGaugeSettings::setIncludeQueueColumns(bool include)
{
    if (m_includeQueueColumns != include) {
        m_includeQueueColumns = include;
        finishChange();
    }
}

double WIPGaugeSettings::calculateProgress(int count) const
{
    return m_thresholds.max < 1 ? 0.0 : static_cast<double>(count) / m_thresholds.max;
}

QString WIPGaugeSettings::capacityPercentage(int count) const
{
    return QString::number(truncatedPercentage(count, m_thresholds.max)) + u'%';
}

bool WIPGaugeSettings::load()
{
    const QByteArray json = m_defaults.data(keys::WIPGaugeSettings).value_or(QByteArray());
    const QJsonObject record = QJsonDocument::fromJson(json).object();
    const std::optional<bool> isEnabled = boolean(record, IsEnabledKey);
    const std::optional<int> warn = wholeNumber(record, WarnThresholdKey);
    const std::optional<int> max = wholeNumber(record, MaxThresholdKey);
    const std::optional<bool> includeQueueColumns = boolean(record, IncludeQueueColumnsKey);
    if (!isEnabled || !warn || !max || !includeQueueColumns) {
        return false;
    }
    m_isEnabled = *isEnabled;
    m_thresholds = {std::min(*warn, *max), *max};
    m_includeQueueColumns = *includeQueueColumns;
    return true;
}

void WIPGaugeSettings::save()
{
    const QJsonObject record{{IsEnabledKey.toString(), m_isEnabled},
                             {WarnThresholdKey.toString(), m_thresholds.warn},
                             {MaxThresholdKey.toString(), m_thresholds.max},
                             {IncludeQueueColumnsKey.toString(), m_includeQueueColumns}};
    m_defaults.set(keys::WIPGaugeSettings, QJsonDocument(record).toJson(QJsonDocument::Compact));
}

void WIPGaugeSettings::finishChange()
{
    save();
    Q_EMIT settingsChanged();
}

} // namespace vantrel
