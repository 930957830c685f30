#include "SampleBoard.h"

#include "foundations/AppConfig.h"
#include "foundations/Clock.h"
#include "foundations/DefaultsKeys.h"
#include "foundations/FileSaver.h"
#include "foundations/UserDefaults.h"
#include "persistence/PersistenceManager.h"

#include <QDir>

#include <array>

namespace vantrel {

namespace {

constexpr double Hour = 3600.0;

/** One task of the sample, in the words in which it is easily written down. */
struct Sample
{
    const char *name;
    int column;
    int swimLane;
    double ageInDays = 0.0;
    const char *project = nullptr;
    const char *tag = nullptr;
    const char *note = nullptr;
    /** Hours from now. */
    std::optional<double> dueIn = {};
    bool isFlagged = false;
    const char *blockReason = nullptr;
};

const std::vector<Sample> &samples()
{
    static const std::vector<Sample> list{
        {.name = "Draft Q1 budget for the board meeting",
         .column = 0,
         .swimLane = 0,
         .ageInDays = 2,
         .project = "Business Operations",
         .tag = "Write",
         .note = "Ask finance for last year's figures.",
         .dueIn = 3},
        {.name = "Renew passport",
         .column = 0,
         .swimLane = 0,
         .ageInDays = 9,
         .project = "Family",
         .dueIn = -240,
         .isFlagged = true},
        {.name = "Book dentist", .column = 0, .swimLane = 0},
        {.name = "Plan the summer holiday with Ines and the children",
         .column = 0,
         .swimLane = 0,
         .ageInDays = 4,
         .project = "Family",
         .tag = "Home"},
        {.name = "Update user authentication module",
         .column = 1,
         .swimLane = 0,
         .ageInDays = 6,
         .project = "Website Redesign",
         .tag = "Code"},
        {.name = "Collect screenshots for the help pages",
         .column = 1,
         .swimLane = 0,
         .ageInDays = 12,
         .project = "Website Redesign",
         .blockReason = "Waiting for response"},
        {.name = "Measure the start of the program",
         .column = 1,
         .swimLane = 0,
         .ageInDays = 1,
         .tag = "Code"},
        {.name = "Proof-read newsletter",
         .column = 2,
         .swimLane = 0,
         .ageInDays = 1,
         .tag = "Email",
         .dueIn = 50},
        {.name = "🎂 Cake for the team: ask who eats what 🥜",
         .column = 2,
         .swimLane = 0,
         .tag = "Home",
         .dueIn = 30,
         .isFlagged = true,
         .blockReason = "Waiting for approval from the purchasing department"},
        {.name = "Pay electricity bill", .column = 3, .swimLane = 0},
        {.name = "Send slides to Dana", .column = 3, .swimLane = 0, .ageInDays = 4, .tag = "Email"},
        {.name = "Estimate the mobile redesign",
         .column = 0,
         .swimLane = 1,
         .ageInDays = 5,
         .project = "Mobile App Development",
         .tag = "Research"},
        {.name = "Write acceptance tests for import", .column = 0, .swimLane = 1, .tag = "Code"},
        {.name = "Fix checkout rounding",
         .column = 1,
         .swimLane = 1,
         .ageInDays = 2,
         .project = "Website Redesign",
         .dueIn = 22,
         .isFlagged = true},
        {.name = "مراجعة العقد مع المحامي",
         .column = 1,
         .swimLane = 1,
         .ageInDays = 1,
         .project = "العقود",
         .tag = "Email"},
        {.name =
             "Donaudampfschifffahrtsgesellschaftskapitänsmützenabzeichen in writing, with three offers and "
             "samples of the cloth, before the association meets again",
         .column = 3,
         .swimLane = 1,
         .ageInDays = 20,
         .project = "Association of retired captains of the Danube Steamship Company",
         .tag = "Correspondence"},
        {.name = "Accessibility pass on forms",
         .column = 2,
         .swimLane = 1,
         .ageInDays = 8,
         .note = "With the screen reader, not only with the checker."},
        {.name = "Migrate DNS", .column = 3, .swimLane = 1, .ageInDays = 3},
    };
    return list;
}

std::optional<QString> text(const char *value)
{
    return value ? std::optional(QString::fromUtf8(value)) : std::nullopt;
}

std::vector<Column> sampleColumns()
{
    std::vector<Column> columns = Column::defaultColumns();
    Column review = columns[1];
    review.id = ColumnId::create();
    review.name = QStringLiteral("Review");
    review.stableId = QStringLiteral("active_review");
    review.wipLimit = 4;
    review.wipLimitType = WIPLimitType::Column;
    review.colorHex = QStringLiteral("#7A45D8");
    columns.insert(columns.begin() + 2, review);
    columns[1].wipLimit = 2;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        columns[i].position = static_cast<int>(i);
    }
    return columns;
}

std::vector<SwimLane> sampleSwimLanes()
{
    const auto lane = [](const QString &name, const QString &icon, int position, bool isExpanded,
                         double height) {
        SwimLane swimLane = SwimLane::defaultSwimLane();
        swimLane.name = name;
        swimLane.icon = icon;
        swimLane.position = position;
        swimLane.isExpanded = isExpanded;
        swimLane.height = height;
        swimLane.stableId = u"swimlane_" + swimLane.id.text();
        return swimLane;
    };
    SwimLane first = SwimLane::defaultSwimLane();
    return {first, lane(QStringLiteral("Client work"), QStringLiteral("briefcase"), 1, true, 200.0),
            lane(QStringLiteral("Someday"), QStringLiteral("star"), 2, false, 200.0)};
}

PlainTextRecord recordOf(const Sample &sample, Date now, bool isComplete)
{
    PlainTextRecord record;
    WorkItemFields &fields = record.fields;
    fields.id = PlainTextIdPrefix + uuidText(QUuid::createUuid());
    fields.name = QString::fromUtf8(sample.name);
    fields.note = text(sample.note);
    fields.creationDate = now - sample.ageInDays * SecondsPerDay - 60.0;
    fields.modificationDate = now;
    fields.isFlagged = sample.isFlagged;
    fields.isComplete = isComplete;
    if (isComplete) fields.completionDate = now - Hour;
    if (sample.dueIn) fields.dueDate = now + *sample.dueIn * Hour;
    if (const auto project = text(sample.project)) fields.project = Project{*project, *project};
    if (const auto tag = text(sample.tag)) {
        fields.tag = Tag{u"tag-" + tag->toLower(), *tag};
        record.hashtags = {*tag};
    }
    return record;
}

void writeTasks(PersistenceManager &persistence, const Clock &clock)
{
    const std::vector<Column> columns = sampleColumns();
    const std::vector<SwimLane> swimLanes = sampleSwimLanes();
    persistence.saveBoardConfiguration(columns);
    persistence.saveSwimLaneConfiguration(swimLanes);

    QHash<CellId, int> counts;
    std::vector<PlainTextRecord> records;
    std::vector<TaskPosition> places;
    for (const Sample &sample : samples()) {
        const Column &column = columns.at(static_cast<std::size_t>(sample.column));
        const SwimLane &swimLane = swimLanes.at(static_cast<std::size_t>(sample.swimLane));
        records.push_back(recordOf(sample, clock.now(), column.isCompleted()));
        const QString &id = records.back().fields.id;
        places.push_back({id, column.id, swimLane.id, counts[{swimLane.id, column.id}]++});
    }
    persistence.savePlainTextTasks(records);
    persistence.batchSaveTaskPositions(places);
    for (std::size_t i = 0; i < records.size(); ++i) {
        if (const auto reason = text(samples()[i].blockReason)) {
            persistence.saveTaskAsBlocked(records[i].fields.id, reason);
        }
    }
}

/** A folder of two task lists, as programs that sync with a calendar server leave it on the disk. */
void writeReminders(const QString &folder, FileSaver &saver, Date now)
{
    struct Todo
    {
        const char *list;
        const char *name;
        const char *properties;
    };
    static constexpr std::array todos{
        Todo{"Shopping", "Coffee beans", ""},
        Todo{"Shopping", "Batteries for the smoke alarm", "PRIORITY:1\r\n"},
        Todo{"Household", "Water the plants",
             "DTSTART;VALUE=DATE:%1\r\nDUE;VALUE=DATE:%1\r\nRRULE:FREQ=WEEKLY\r\n"},
        Todo{"Household", "Call the chimney sweep", "DESCRIPTION:The number is on the boiler.\r\n"},
    };
    const QDate today = now.toDateTime().date();
    const QString stamp = now.toDateTime().toUTC().toString(QStringLiteral("yyyyMMdd'T'HHmmss'Z'"));
    for (const Todo &todo : todos) {
        const QString list = folder + u'/' + QString::fromUtf8(todo.list);
        QDir().mkpath(list);
        const QString uid = uuidText(QUuid::createUuid());
        QString properties = QString::fromUtf8(todo.properties);
        properties.replace(QStringLiteral("%1"), today.toString(QStringLiteral("yyyyMMdd")));
        const QString text =
            u"BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Vantrel//Sample//EN\r\nBEGIN:VTODO\r\nUID:" + uid +
            u"\r\nDTSTAMP:" + stamp + u"\r\nCREATED:" + stamp + u"\r\nSUMMARY:" +
            QString::fromUtf8(todo.name) + u"\r\n" + properties + u"END:VTODO\r\nEND:VCALENDAR\r\n";
        saver.save(list + u'/' + uid + u".ics", text.toUtf8());
        saver.save(list + u"/displayname", todo.list);
    }
}

} // namespace

void writeSampleBoard(const AppConfig &config, Clock &clock, SampleSources sources)
{
    FileCalls calls;
    FileSaver saver(calls);
    UserDefaults defaults(saver, config.filePath(QStringLiteral("devUser-defaults.json")));
    if (sources == SampleSources::All) {
        const QString folder = config.filePath(QStringLiteral("task-lists"));
        writeReminders(folder, saver, clock.now());
        defaults.set(keys::RemindersFolder, folder);
        defaults.set(keys::IsOmniFocusEnabled, true);
        defaults.set(keys::IsRemindersEnabled, true);
    }
    PersistenceManager persistence(config, defaults, saver, clock);
    writeTasks(persistence, clock);
    persistence.cleanup();
}

} // namespace vantrel
