// What OmniFocus answers, an item a line.

#include "Fuzz.h"

#include "sources/omnifocus/OmniFocusRecords.h"

#include <algorithm>
#include <cmath>

using namespace vantrel;
using namespace vantrel::fuzz;
using namespace vantrel::omnifocus;

namespace {

void checkTask(const TaskRecord &task)
{
    const WorkItemFields &fields = task.fields;
    requireValid(fields.id);
    requireValid(fields.name);
    requireValid(fields.note);
    requireValid(fields.project->name);
    requireValid(fields.tag->name);
    for (const std::optional<Date> &date :
         {fields.dueDate, fields.completionDate, fields.deferDate, std::optional(fields.creationDate)}) {
        require(!date || date->toDateTime().isValid(), "a date is one of the calendar");
    }
    require(task.recurrence.interval.value_or(1) > 0, "time goes on between two repetitions");
}

void checkAnswer(const std::vector<AnswerItem> &items, const AnswerDateReader &dates)
{
    const std::vector<TaskRecord> tasks = tasksFromAnswer(items, dates, Date());
    const auto complete = std::count_if(items.begin(), items.end(), [](const AnswerItem &item) {
        return item->split(QStringLiteral("|||")).size() >= FewestFields;
    });
    require(static_cast<std::ptrdiff_t>(tasks.size()) == complete, "each complete record gives one task");
    std::for_each(tasks.begin(), tasks.end(), checkTask);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArrayList lines = bytesOf(data, size).split('\n');
    std::vector<AnswerItem> items;
    for (const QByteArray &line : lines) {
        items.emplace_back(QString::fromUtf8(line));
    }
    for (const QLocale::Territory country : {QLocale::UnitedKingdom, QLocale::UnitedStates}) {
        // A new one each time: it remembers the days that it has read.
        checkAnswer(items, AnswerDateReader(QLocale(QLocale::English, country)));
    }
    for (const ProjectInfo &project : projectsFromAnswer(items)) {
        requireValid(project.name);
    }
    tagsFromAnswer(items);
    for (const AnswerItem &item : items) {
        const std::optional<DueSoonSettings> dueSoon = dueSoonFromAnswer(*item);
        require(!dueSoon || std::isfinite(dueSoon->days), "a window of days has an end");
    }
    return 0;
}
