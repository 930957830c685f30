#pragma once

#include "viewmodels/CardContent.h"

#include <QObject>

namespace vantrel {

class TimeManager;
class UserDefaults;

/**
 * The user's choices and the time as all cards of the board see them. Owned by BoardViewModel; GUI thread.
 */
class CardPreferences : public QObject
{
    Q_OBJECT
public:
    CardPreferences(const UserDefaults &defaults, const TimeManager &time, QObject *parent = nullptr);

    /** Valid while this object lives. */
    CardRules rules() const;
    bool useColumnHeaderColorAsBackground() const { return m_useColumnHeaderColorAsBackground; }

Q_SIGNALS:
    /** Every card may show something else: a choice was made, or a minute has passed. */
    void changed();
    void backgroundChanged();

private:
    void read();
    void handleValueChanged(const QString &key);

    const UserDefaults &m_defaults;
    const TimeManager &m_time;
    UserDefaultsDateSettings m_dateSettings;
    TaskHelper m_helper;
    int m_workAgeWarningDays = 0;
    bool m_showProjectInfo = true;
    bool m_showFlaggedEffects = true;
    bool m_useColumnHeaderColorAsBackground = true;
};

} // namespace vantrel
