#include "sources/TaskManagerProtocol.h"

#include "foundations/Ids.h"

#include <algorithm>

namespace vantrel {

namespace {
constexpr std::array<QStringView, 3> RawValues{u"OmniFocus", u"Reminders", u"Plain Text"};
static_assert(RawValues.size() == AllTaskManagerTypes.size());
} // namespace

QString rawValue(TaskManagerType type)
{
    return RawValues.at(static_cast<std::size_t>(type)).toString();
}

std::optional<TaskManagerType> taskManagerTypeFromRawValue(QStringView text)
{
    const auto found = std::find(RawValues.begin(), RawValues.end(), text);
    return found != RawValues.end() ? std::optional(static_cast<TaskManagerType>(found - RawValues.begin()))
                                    : std::nullopt;
}

bool hasIdFormOf(TaskManagerType type, QStringView taskId)
{
    switch (type) {
    case TaskManagerType::OmniFocus:
        return !taskId.startsWith(ReminderIdPrefix) && !taskId.startsWith(MockIdPrefix);
    case TaskManagerType::Reminders:
        return taskId.startsWith(ReminderIdPrefix);
    case TaskManagerType::PlainText:
        break;
    }
    return taskId.startsWith(PlainTextIdPrefix);
}

QCoro::Task<bool> markTask(TaskManagerProtocol &manager, const QString &taskId, bool isComplete)
{
    return isComplete ? manager.markTaskComplete(taskId) : manager.markTaskIncomplete(taskId);
}

} // namespace vantrel
