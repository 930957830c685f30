#include "viewmodels/CardPreferences.h"

#include "foundations/DefaultsKeys.h"
#include "foundations/TimeManager.h"
#include "foundations/UserDefaults.h"

#include <algorithm>
#include <array>
#include <limits>

namespace vantrel {

namespace {

constexpr int DefaultWorkAgeWarningDays = 7;

constexpr std::array KeysOfCards{keys::WorkAgeWarningDays, keys::ShowProjectInfo, keys::ShowFlaggedEffects,
                                 keys::DueSoonDays, keys::DueSoonTime};

int warningDays(const UserDefaults &defaults)
{
    const qint64 days = defaults.integer(keys::WorkAgeWarningDays).value_or(0);
    return days <= 0 ? DefaultWorkAgeWarningDays
                     : static_cast<int>(std::min<qint64>(days, std::numeric_limits<int>::max()));
}

} // namespace

CardPreferences::CardPreferences(const UserDefaults &defaults, const TimeManager &time, QObject *parent)
    : QObject(parent), m_defaults(defaults), m_time(time), m_dateSettings(defaults), m_helper(m_dateSettings)
{
    read();
    connect(&defaults, &UserDefaults::valueChanged, this, &CardPreferences::handleValueChanged);
    connect(&time, &TimeManager::currentTimeChanged, this, &CardPreferences::changed);
}

CardRules CardPreferences::rules() const
{
    return {m_helper, m_time.currentTime(), m_workAgeWarningDays, m_showProjectInfo, m_showFlaggedEffects};
}

void CardPreferences::read()
{
    m_workAgeWarningDays = warningDays(m_defaults);
    m_showProjectInfo = m_defaults.boolean(keys::ShowProjectInfo).value_or(true);
    m_showFlaggedEffects = m_defaults.boolean(keys::ShowFlaggedEffects).value_or(true);
    m_useColumnHeaderColorAsBackground =
        m_defaults.boolean(keys::UseColumnHeaderColorAsBackground).value_or(true);
}

void CardPreferences::handleValueChanged(const QString &key)
{
    read();
    if (key == keys::UseColumnHeaderColorAsBackground) {
        Q_EMIT backgroundChanged();
    } else if (std::find(KeysOfCards.begin(), KeysOfCards.end(), key) != KeysOfCards.end()) {
        Q_EMIT changed();
    }
}

} // namespace vantrel
