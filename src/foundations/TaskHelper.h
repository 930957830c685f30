#pragma once

#include "foundations/WorkItem.h"

#include <QCoreApplication>
#include <QLocale>

#include <optional>

namespace vantrel {

class UserDefaults;

/** How far ahead a task counts as due soon. */
class DateSettingsProvider
{
public:
    DateSettingsProvider() = default;
    virtual ~DateSettingsProvider() = default;
    Q_DISABLE_COPY_MOVE(DateSettingsProvider)

    /** Whole days after today; 0 for today only. */
    virtual int dueSoonDays() const = 0;
    /** The end of the last of these days, as "HH:mm:ss". */
    virtual QString dueSoonTime() const = 0;
};

/** The window as the user defaults have it: a copy of OmniFocus's own setting. */
class UserDefaultsDateSettings final : public DateSettingsProvider
{
public:
    explicit UserDefaultsDateSettings(const UserDefaults &defaults);

    /** 0 while nothing usable is stored. */
    int dueSoonDays() const override;
    /** "17:00:00" while no text is stored. */
    QString dueSoonTime() const override;

private:
    const UserDefaults &m_defaults;
};

/**
 * What cards, filters and lists say about a task's dates, in the words and formats of one locale. Days are
 * days of the local time zone. A value; the settings must outlive it. GUI thread.
 */
class TaskHelper
{
    Q_DECLARE_TR_FUNCTIONS(vantrel::TaskHelper)
public:
    explicit TaskHelper(const DateSettingsProvider &settings, const QLocale &locale = QLocale());

    /** True if `date` is earlier than `relativeTo`. */
    static bool isOverdue(std::optional<Date> date, Date relativeTo);

    /**
     * True from the start of today up to the settings' time on the last day of their window. All of today
     * counts, also what has passed; earlier days are overdue instead.
     */
    bool isDueSoon(std::optional<Date> date, Date now) const;

    /** Short date and short time. */
    QString formattedDueString(Date date) const;
    /** "HH:mm" for today, else the short date; nothing for a task without due date. */
    std::optional<QString> formattedDueDate(const WorkItem &task, Date now) const;
    QString formattedAge(const WorkItem &task, Date now) const;

    /** "Today", "1 day", "2 days": whole days, cut toward zero. */
    static QString humanReadableAge(double seconds);

private:
    const DateSettingsProvider &m_settings;
    QLocale m_locale;
};

} // namespace vantrel
