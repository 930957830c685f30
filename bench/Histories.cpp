#include "Histories.h"

#include "foundations/OmniFocusTask.h"
#include "foundations/ReminderWorkItem.h"

namespace vantrel::bench {

WorkItems finishedItems(Date now, int count)
{
    WorkItems items;
    for (int i = 0; i < count; ++i) {
        WorkItemFields fields;
        fields.id = QString::number(i);
        fields.isComplete = true;
        fields.completionDate = now - (i * 7919 % count) * (LookbackDays * SecondsPerDay / count);
        if (i % 2 == 0) {
            items.push_back(std::make_shared<OmniFocusTask>(std::move(fields)));
        } else {
            items.push_back(
                std::make_shared<ReminderWorkItem>(std::move(fields), ReminderWorkItem::Details()));
        }
    }
    return items;
}

WorkItems openItems(Date now, int count)
{
    constexpr double oldest = 60 * SecondsPerDay;
    WorkItems items;
    for (int i = 0; i < count; ++i) {
        WorkItemFields fields;
        fields.id = QString::number(i);
        fields.name = QStringLiteral("Task %1 of some length").arg(i);
        fields.creationDate = now - (i * 7919 % count) * (oldest / count);
        items.push_back(std::make_shared<OmniFocusTask>(std::move(fields)));
    }
    return items;
}

} // namespace vantrel::bench
