#pragma once

#include "foundations/WorkItem.h"

namespace vantrel {

/** A task of the OmniFocus source. */
class OmniFocusTask final : public WorkItem
{
    Q_OBJECT
public:
    explicit OmniFocusTask(WorkItemFields fields);

    void setRecurrenceInfo(bool isRepeating, std::optional<RepeatFrequency> frequency,
                           std::optional<int> interval, const std::optional<QString> &pattern);

    /** "omnifocus:///task/" and the percent-encoded id. */
    QUrl omniFocusLink() const;

    QUrl appSpecificLink() const override { return omniFocusLink(); }
    QString debugDescription() const override;
};

} // namespace vantrel
