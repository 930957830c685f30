#pragma once

#include "board/rules/WIPRules.h"

#include <QObject>

namespace vantrel {

class UserDefaults;

/**
 * The two thresholds of the work-in-progress gauge and what it counts; stored in the user defaults at each
 * change. `warnThreshold` never exceeds `maxThreshold`: setting one moves the other. Owned by BoardState; GUI
 * thread.
 */
class WIPGaugeSettings : public QObject
{
    Q_OBJECT
public:
    explicit WIPGaugeSettings(UserDefaults &defaults, QObject *parent = nullptr);

    bool isEnabled() const { return m_isEnabled; }
    int warnThreshold() const { return m_thresholds.warn; }
    int maxThreshold() const { return m_thresholds.max; }
    WIPThresholds thresholds() const { return m_thresholds; }
    bool includeQueueColumns() const { return m_includeQueueColumns; }

    void setEnabled(bool isEnabled);
    void setWarnThreshold(int threshold);
    void setMaxThreshold(int threshold);
    void setIncludeQueueColumns(bool include);

    /** The fill of the gauge at `count`: green, amber from the warning, red from the maximum on. */
    Color gaugeColor(int count) const { return wipGaugeColor(count, m_thresholds); }
    /** Count over maximum; 0 for a maximum under 1. */
    double calculateProgress(int count) const;
    /** "{n}%", "0%" for a maximum under 1. */
    QString capacityPercentage(int count) const;

Q_SIGNALS:
    void settingsChanged();

private:
    /** False, with the defaults in force, if what is stored makes no sense. */
    bool load();
    void save();
    void finishChange();

    UserDefaults &m_defaults;
    bool m_isEnabled = false;
    WIPThresholds m_thresholds;
    bool m_includeQueueColumns = true;
};

} // namespace vantrel
