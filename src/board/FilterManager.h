#pragma once

#include "board/rules/TaskFilter.h"
#include "foundations/NotificationCenter.h"
#include "foundations/WorkItem.h"

#include <QObject>
#include <QSet>

#include <vector>

namespace vantrel {

class UserDefaults;

/** A tag that the filter sidebar offers, with the number of tasks that bear it. */
struct AvailableTag
{
    QString tagID;
    QString tagName;
    int count = 0;
    friend bool operator==(const AvailableTag &, const AvailableTag &) = default;
};

/**
 * The four filters of the board (tag, flagged, priority, source) and the test whether a task is shown.
 * Nothing of it is stored. Owned by BoardState; GUI thread.
 */
class FilterManager : public QObject
{
    Q_OBJECT
public:
    static constexpr QStringView UntaggedTagID = vantrel::UntaggedTagID;

    FilterManager(NotificationCenter &notifications, UserDefaults &defaults, QObject *parent = nullptr);

    const std::vector<AvailableTag> &availableTags() const { return m_availableTags; }
    const QSet<QString> &selectedTagIDs() const { return m_filter.tagIDs; }
    const QSet<EisenhowerPriority> &selectedPriorities() const { return m_filter.priorities; }
    const QSet<QString> &selectedSourceIDs() const { return m_filter.sourceIDs; }
    bool isFilterActive() const { return m_filter.isActive(); }
    bool isTagSidebarVisible() const { return m_isTagSidebarVisible; }
    bool isFlaggedFilterActive() const { return m_filter.flaggedOnly; }
    bool isPriorityFilterActive() const { return !m_filter.priorities.isEmpty(); }
    bool isSourceFilterActive() const { return !m_filter.sourceIDs.isEmpty(); }

    void updateAvailableTags(const std::vector<WorkItemPtr> &tasks);
    void toggleTagFilter(const QString &tagID);
    void clearTagFilters();
    void toggleTagSidebar();
    void toggleFlaggedFilter();
    void clearFlaggedFilter();
    void togglePriorityFilter(EisenhowerPriority priority);
    void clearPriorityFilters();
    void toggleSourceFilter(const QString &sourceID);
    void clearSourceFilters();

    /** The filters as they are now: take it once for a pass over many tasks. */
    TaskFilter taskFilter() const;
    bool isTaskVisibleWithFilters(const WorkItem &task) const { return taskFilter().accepts(task); }

    /** See TaskFilter::sourceIdentifier. */
    static QString sourceIdentifier(const WorkItem &task) { return TaskFilter::sourceIdentifier(task); }

Q_SIGNALS:
    /** A filter, what it hides, or the sidebar's visibility. */
    void filtersChanged();
    void availableTagsChanged();

private:
    /** Adds or removes `value`, and says so in the log; `noun` and `name` are its words there. */
    template <typename T>
    void toggle(QSet<T> &values, const T &value, QStringView noun, const QString &name,
                NotificationName notification);
    void finishChange(const QString &logLine, NotificationName notification);

    NotificationCenter &m_notifications;
    UserDefaults &m_defaults;
    std::vector<AvailableTag> m_availableTags;
    FilterSelection m_filter;
    bool m_isTagSidebarVisible = false;
};

} // namespace vantrel
