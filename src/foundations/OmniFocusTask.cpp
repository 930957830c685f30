#include "foundations/OmniFocusTask.h"

namespace vantrel {

OmniFocusTask::OmniFocusTask(WorkItemFields fields) : WorkItem(std::move(fields)) {}

void OmniFocusTask::setRecurrenceInfo(bool isRepeating, std::optional<RepeatFrequency> frequency,
                                      std::optional<int> interval, const std::optional<QString> &pattern)
{
    setRecurrence({isRepeating, frequency, interval, pattern});
}

QUrl OmniFocusTask::omniFocusLink() const
{
    return QUrl::fromEncoded("omnifocus:///task/" + QUrl::toPercentEncoding(id()));
}

QString OmniFocusTask::debugDescription() const
{
    return u"OmniFocusTask(" + describedFields() + u')';
}

} // namespace vantrel
