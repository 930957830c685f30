#pragma once

#include "sources/reminders/vdir/IcalHandle.h"
#include "sources/reminders/vdir/IcsDocument.h"

#include <QCoreApplication>
#include <QString>

#include <vector>

namespace vantrel {

/**
 * A recurring task, seen as the occurrences that are still to come: what its DTSTART, DUE and RRULE must say
 * so that it begins with the next one. Never guesses: a series that could not be told the same way from its
 * next occurrence on is refused. A value for one calculation; any thread.
 */
class IcsSeries
{
    Q_DECLARE_TR_FUNCTIONS(vantrel::IcsSeries)
public:
    struct Step
    {
        enum class Kind { Advanced, Ended, Refused };
        Kind kind = Kind::Refused;
        /** The new values, for those properties that the task has. */
        QByteArray start;
        QByteArray due;
        QByteArray rule;
        /** Why it is refused, for the user. */
        QString refusal;
    };

    /** `todo` is the series in `calendar`, and `component` is its text in `document`. */
    IcsSeries(icalcomponent *calendar, icalcomponent *todo, const IcsDocument &document,
              IcsDocument::Component component);

    /** From the present occurrence to the next one that is neither left out nor settled on its own. */
    Step next() const;

    /** True if the present occurrence is already settled on its own: the true present one comes later. */
    bool isPresentSettled() const;

private:
    struct Moment
    {
        icaltimetype time = icaltime_null_time();
        bool isPresent() const { return !icaltime_is_null_time(time); }
        QByteArray zone;
    };

    Moment moment(icalproperty_kind kind) const;
    void readExceptions();
    void readOverrides();
    bool isLeftOut(icaltimetype occurrence) const;
    QString obstacle() const;
    QByteArray shiftedDue(icaltimetype newStart) const;

    icalcomponent *m_calendar;
    icalcomponent *m_todo;
    /** The rule as written. */
    QByteArray m_rule;
    int m_rules = 0;
    bool m_hasOtherDates = false;
    Moment m_start;
    Moment m_due;
    std::vector<icaltimetype> m_exceptions;
    std::vector<icaltimetype> m_settled;
    /** Open occurrences that differ from what the rule says. */
    std::vector<icaltimetype> m_moved;
    bool m_hasRange = false;
};

} // namespace vantrel
