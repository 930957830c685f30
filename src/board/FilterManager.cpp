#include "board/FilterManager.h"

#include "foundations/DefaultsKeys.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"
#include "foundations/UserDefaults.h"

#include <QHash>

#include <algorithm>

namespace vantrel {

namespace {

QString onOff(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

/** By name, whatever the case; equal names keep their order. */
void sortByName(std::vector<AvailableTag> &tags)
{
    std::stable_sort(tags.begin(), tags.end(), [](const AvailableTag &a, const AvailableTag &b) {
        return a.tagName.toLower() < b.tagName.toLower();
    });
}

} // namespace

FilterManager::FilterManager(NotificationCenter &notifications, UserDefaults &defaults, QObject *parent)
    : QObject(parent), m_notifications(notifications), m_defaults(defaults)
{
    connect(&defaults, &UserDefaults::valueChanged, this, [this](const QString &key) {
        if (key == keys::ExcludeDoneTasksFromFilter && isFilterActive()) {
            Q_EMIT filtersChanged();
        }
    });
}

void FilterManager::updateAvailableTags(const std::vector<WorkItemPtr> &tasks)
{
    std::vector<AvailableTag> tags;
    QHash<QString, size_t> indexes;
    int untagged = 0;
    for (const WorkItemPtr &task : tasks) {
        if (TaskFilter::isUntagged(*task)) {
            ++untagged;
            continue;
        }
        const Tag &tag = *task->tag();
        const auto known = indexes.constFind(tag.id);
        if (known == indexes.cend()) {
            indexes.insert(tag.id, tags.size());
            tags.push_back({tag.id, tag.name, 1});
        } else {
            ++tags[*known].count;
        }
    }
    sortByName(tags);
    if (untagged > 0) {
        tags.insert(tags.begin(), {UntaggedTagID.toString(), tr("Untagged"), untagged});
        log::debug(u"Adding Untagged filter option with " + QString::number(untagged) + u" tasks");
    }
    const QString including =
        untagged > 0 ? QStringLiteral("untagged option") : QStringLiteral("no untagged tasks");
    log::debug(u"Updated available tags: found " + QString::number(tags.size()) + u" unique tags including " +
               including);
    if (tags != m_availableTags) {
        m_availableTags = std::move(tags);
        Q_EMIT availableTagsChanged();
    }
}

void FilterManager::toggleTagFilter(const QString &tagID)
{
    toggle(m_filter.tagIDs, tagID, u"tag", tagID, notifications::TagFilterUpdated);
}

void FilterManager::clearTagFilters()
{
    m_filter.tagIDs.clear();
    finishChange(QStringLiteral("Cleared all tag filters"), notifications::TagFilterUpdated);
}

void FilterManager::toggleTagSidebar()
{
    m_isTagSidebarVisible = !m_isTagSidebarVisible;
    finishChange(u"Tag sidebar visibility set to: " + onOff(m_isTagSidebarVisible),
                 notifications::TagFilterUpdated);
}

void FilterManager::toggleFlaggedFilter()
{
    m_filter.flaggedOnly = !m_filter.flaggedOnly;
    finishChange(u"Flagged filter set to: " + onOff(m_filter.flaggedOnly), notifications::TagFilterUpdated);
}

void FilterManager::clearFlaggedFilter()
{
    m_filter.flaggedOnly = false;
    finishChange(QStringLiteral("Cleared flagged filter"), notifications::TagFilterUpdated);
}

void FilterManager::togglePriorityFilter(EisenhowerPriority priority)
{
    toggle(m_filter.priorities, priority, u"priority", displayName(priority),
           notifications::EisenhowerPriorityUpdated);
}

void FilterManager::clearPriorityFilters()
{
    m_filter.priorities.clear();
    finishChange(QStringLiteral("Cleared all priority filters"), notifications::EisenhowerPriorityUpdated);
}

void FilterManager::toggleSourceFilter(const QString &sourceID)
{
    toggle(m_filter.sourceIDs, sourceID, u"source", sourceID, notifications::TagFilterUpdated);
}

void FilterManager::clearSourceFilters()
{
    m_filter.sourceIDs.clear();
    finishChange(QStringLiteral("Cleared all source filters"), notifications::TagFilterUpdated);
}

TaskFilter FilterManager::taskFilter() const
{
    const bool hidesDone = m_defaults.boolean(keys::ExcludeDoneTasksFromFilter).value_or(false);
    return TaskFilter(m_filter, hidesDone ? TaskFilter::DoneTasks::Hidden : TaskFilter::DoneTasks::Shown);
}

template <typename T>
void FilterManager::toggle(QSet<T> &values, const T &value, QStringView noun, const QString &name,
                           NotificationName notification)
{
    if (values.remove(value)) {
        finishChange(u"Removed " + noun + u' ' + name + u" from filter. Remaining: " +
                         QString::number(values.size()),
                     notification);
    } else {
        values.insert(value);
        finishChange(u"Added " + noun + u' ' + name + u" to filter. Total: " + QString::number(values.size()),
                     notification);
    }
}

void FilterManager::finishChange(const QString &logLine, NotificationName notification)
{
    log::info(logLine);
    Q_EMIT filtersChanged();
    m_notifications.post(notification);
}

} // namespace vantrel
