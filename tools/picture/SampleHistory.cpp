#include "SampleHistory.h"

#include "foundations/AppConfig.h"
#include "foundations/Clock.h"
#include "foundations/FileSaver.h"
#include "foundations/OmniFocusTask.h"
#include "foundations/ReminderWorkItem.h"
#include "foundations/UserDefaults.h"
#include "persistence/PersistenceManager.h"

namespace vantrel {

namespace {

struct AgingTask
{
    const char *name;
    double ageInDays;
};

constexpr AgingTask AgingTasks[] = {
    {"Plan the office move", 41},
    {"Old invoice follow-up", 33},
    {"Collect screenshots", 16},
    {"Archive the old wiki", 23},
    {"Ask for a quote for the roof", 19},
    {"Accessibility pass on forms", 8},
    {"Renew passport", 9},
    {"Write the release notes", 11},
    {"Sort the photo archive", 13},
    {"Prepare the tax papers", 10},
    {"Estimate the mobile redesign", 5},
    {"Update the login module", 6},
    {"Review the security report", 4},
    {"Order new business cards", 3},
    {"Answer the survey", 5},
    {"Interview notes for Dana", 4},
    {"Plan the summer holiday", 4},
    {"Clean up the build scripts", 3},
    {"Draft the newsletter", 6},
    {"Draft Q1 budget for the board meeting", 2},
    {"Fix checkout rounding", 2},
    {"Measure the start of the program", 1},
    {"Proof-read the brochure", 1},
    {"Water the plants at work", 2},
    {"Call the bank", 1},
    {"Return the library books", 2},
    {"Book dentist", 0},
    {"Pay electricity bill", 0},
    {"Send slides to Dana", 0},
    {"Buy a present for Ines", 0},
};

/** How many were finished on each of the last 21 days in each source, oldest day first. */
constexpr int FinishedInOmniFocus[] = {1, 2, 1, 2, 3, 1, 0, 2, 2, 4, 3, 1, 1, 0, 3, 4, 3, 2, 3, 2, 3};
constexpr int FinishedInReminders[] = {1, 1, 0, 2, 2, 1, 0, 1, 2, 2, 2, 2, 1, 1, 1, 3, 2, 2, 3, 1, 2};

constexpr double Hour = 3600.0;

WorkItemPtr finishedTask(TaskManagerType source, const QString &id, Date completionDate)
{
    WorkItemFields fields;
    fields.id = id;
    fields.name = id;
    fields.creationDate = completionDate - 3 * SecondsPerDay;
    fields.completionDate = completionDate;
    fields.isComplete = true;
    if (source == TaskManagerType::OmniFocus) {
        return std::make_shared<OmniFocusTask>(std::move(fields));
    }
    return std::make_shared<ReminderWorkItem>(std::move(fields), ReminderWorkItem::Details());
}

} // namespace

void writeAgingTasks(const AppConfig &config, Clock &clock)
{
    FileCalls calls;
    FileSaver saver(calls);
    UserDefaults defaults(saver, config.filePath(QStringLiteral("devUser-defaults.json")));
    PersistenceManager persistence(config, defaults, saver, clock);
    std::vector<PlainTextRecord> records;
    for (const AgingTask &task : AgingTasks) {
        PlainTextRecord record;
        record.fields.id = PlainTextIdPrefix + uuidText(QUuid::createUuid());
        record.fields.name = QString::fromUtf8(task.name);
        record.fields.creationDate = clock.now() - task.ageInDays * SecondsPerDay - 60.0;
        record.fields.modificationDate = clock.now();
        records.push_back(record);
    }
    persistence.savePlainTextTasks(records);
    persistence.cleanup();
}

WorkItems finishedTasks(TaskManagerType source, Date now)
{
    const auto &counts = source == TaskManagerType::OmniFocus ? FinishedInOmniFocus : FinishedInReminders;
    const int days = static_cast<int>(std::size(counts));
    // Noon of today, whatever the hour, so that every task falls on its day.
    const QDateTime local = now.toDateTime().toLocalTime();
    const Date noon = Date::fromDateTime(QDateTime(local.date(), QTime(12, 0)));
    WorkItems tasks;
    for (int day = 0; day < days; ++day) {
        for (int i = 0; i < counts[day]; ++i) {
            const QString id = QStringLiteral("sample-%1-%2-%3").arg(rawValue(source)).arg(day).arg(i);
            const Date moment = noon - (days - 1 - day) * SecondsPerDay + (i % 5 - 2) * Hour;
            tasks.push_back(finishedTask(source, id, moment));
        }
    }
    return tasks;
}

} // namespace vantrel
