#include "sources/mock/MockAppleScriptManagerProxy.h"

#include "foundations/Ids.h"
#include "foundations/Log.h"

#include <QFile>

#include <algorithm>
#include <iterator>

namespace vantrel {

namespace {

constexpr auto TestTasksFilePath = ":/sample/omnifocus-tasks.txt";
/** The sample leaves out the deferral, and what the script tells of repetition. */
constexpr qsizetype FewestSampleFields = 13;

std::vector<omnifocus::AnswerItem> createMockDescriptorFromFileContents(const QString &text)
{
    const QStringList lines = text.split(u'\n', Qt::SkipEmptyParts);
    return {lines.begin(), lines.end()};
}

} // namespace

void MockAppleScriptManagerProxy::loadSample()
{
    if (m_isLoaded) {
        return;
    }
    const QString path = QString::fromLatin1(TestTasksFilePath);
    log::info(u"MockAppleScriptManagerProxy: Loading test tasks from " + path);
    QFile file(path);
    const bool isOpen = file.open(QIODevice::ReadOnly);
    Q_ASSERT_X(isOpen, "loadSample", "the sample is missing from the resources");
    const omnifocus::AnswerDateReader dates(QLocale(QLocale::English, QLocale::UnitedKingdom));
    m_tasks =
        omnifocus::tasksFromAnswer(createMockDescriptorFromFileContents(QString::fromUtf8(file.readAll())),
                                   dates, m_clock.now(), FewestSampleFields);
    m_isLoaded = true;
    log::info(QStringLiteral("MockAppleScriptManagerProxy: Loaded %1 test tasks").arg(m_tasks.size()));
}

QCoro::Task<OmniFocusRecords> MockAppleScriptManagerProxy::fetchTasks()
{
    loadSample();
    co_return OmniFocusRecords(m_tasks);
}

QCoro::Task<OmniFocusRecords> MockAppleScriptManagerProxy::fetchCompletedTasks(int lookbackDays)
{
    log::info(
        QStringLiteral("MockAppleScriptManagerProxy: Generating mock completed tasks (lookback: %1 days)")
            .arg(lookbackDays));
    OmniFocusRecords tasks;
    for (int day = 0; day < lookbackDays; day += 2) {
        omnifocus::TaskRecord task;
        WorkItemFields &fields = task.fields;
        const QString number = QString::number(tasks.size() + 1);
        fields.id = u"mock-completed-" + number;
        fields.name = u"Completed Mock Task " + number;
        fields.note = QStringLiteral("Mock completed task for analytics testing");
        fields.isComplete = true;
        fields.completionDate = m_clock.now() - day * SecondsPerDay;
        fields.creationDate = *fields.completionDate - (1 + day % 5) * SecondsPerDay;
        tasks.push_back(std::move(task));
    }
    log::info(
        QStringLiteral("MockAppleScriptManagerProxy: Generated %1 mock completed tasks").arg(tasks.size()));
    co_return tasks;
}

QCoro::Task<> MockAppleScriptManagerProxy::fetchDueSoonMeans()
{
    co_return;
}

template <typename Change>
void MockAppleScriptManagerProxy::edit(const QString &taskId, Change change)
{
    const auto task =
        std::find_if(m_tasks.begin(), m_tasks.end(),
                     [&taskId](const omnifocus::TaskRecord &record) { return record.fields.id == taskId; });
    if (task != m_tasks.end()) {
        change(task->fields);
        task->fields.modificationDate = m_clock.now();
    }
}

bool MockAppleScriptManagerProxy::setComplete(const QString &taskId, std::optional<Date> completionDate)
{
    edit(taskId, [completionDate](WorkItemFields &fields) {
        fields.isComplete = completionDate.has_value();
        fields.completionDate = completionDate;
    });
    return true;
}

QCoro::Task<bool> MockAppleScriptManagerProxy::setTaskName(QString taskId, QString name)
{
    edit(taskId, [&name](WorkItemFields &fields) { fields.name = name; });
    co_return true;
}

QCoro::Task<bool> MockAppleScriptManagerProxy::flagTask(QString taskId, bool flagged)
{
    edit(taskId, [flagged](WorkItemFields &fields) { fields.isFlagged = flagged; });
    co_return true;
}

QCoro::Task<bool> MockAppleScriptManagerProxy::markTaskComplete(QString taskId)
{
    co_return setComplete(taskId, m_clock.now());
}

QCoro::Task<bool> MockAppleScriptManagerProxy::markTaskIncomplete(QString taskId)
{
    co_return setComplete(taskId, std::nullopt);
}

QCoro::Task<QString> MockAppleScriptManagerProxy::createTask(NewTask task)
{
    loadSample();
    omnifocus::TaskRecord record;
    WorkItemFields &fields = record.fields;
    fields.id = u"mock-task-" + uuidText(QUuid::createUuid());
    fields.name = task.name;
    fields.note = task.note;
    fields.dueDate = task.dueDate;
    fields.deferDate = task.deferDate;
    fields.creationDate = m_clock.now();
    fields.modificationDate = m_clock.now();
    fields.project = Project{task.project.value_or(QString()), task.project.value_or(QString())};
    fields.tag = Tag{task.tags.value(0), task.tags.value(0)};
    m_tasks.push_back(std::move(record));
    const QString id = m_tasks.back().fields.id;
    log::info(u"Mock: Created task '" + task.name + u"' with ID: " + id);
    co_return QString(id);
}

QCoro::Task<std::vector<ProjectInfo>> MockAppleScriptManagerProxy::fetchAvailableProjects()
{
    const std::vector<ProjectInfo> projects{
        {QStringLiteral("proj-1"), QStringLiteral("Website Redesign"), true},
        {QStringLiteral("proj-2"), QStringLiteral("API Development"), true},
        {QStringLiteral("proj-3"), QStringLiteral("Team Management"), true},
        {QStringLiteral("proj-4"), QStringLiteral("Documentation"), false},
        {QStringLiteral("proj-5"), QStringLiteral("Mobile App"), true},
    };
    co_return std::vector<ProjectInfo>(projects);
}

QCoro::Task<std::vector<TagInfo>> MockAppleScriptManagerProxy::fetchAvailableTags()
{
    const std::vector<TagInfo> tags{
        {QStringLiteral("tag-1"), QStringLiteral("Code"), true},
        {QStringLiteral("tag-2"), QStringLiteral("Design"), true},
        {QStringLiteral("tag-3"), QStringLiteral("Documentation"), true},
        {QStringLiteral("tag-4"), QStringLiteral("Meeting"), true},
        {QStringLiteral("tag-5"), QStringLiteral("Review"), false},
        {QStringLiteral("tag-6"), QStringLiteral("Testing"), true},
    };
    co_return std::vector<TagInfo>(tags);
}

QString MockAppleScriptManagerProxy::getPermissionsGuidance() const
{
    return QStringLiteral("This is a mock implementation. No real permissions are needed.");
}

} // namespace vantrel
