#pragma once

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
    /** The pseudo tag of tasks that have none. */
    static constexpr QStringView UntaggedTagID = u"untagged";
    static constexpr QStringView UntaggedTagName = u"Untagged";

    FilterManager(NotificationCenter &notifications, UserDefaults &defaults, QObject *parent = nullptr);

    const std::vector<AvailableTag> &availableTags() const { return m_availableTags; }
    const QSet<QString> &selectedTagIDs() const { return m_selectedTagIDs; }
    const QSet<EisenhowerPriority> &selectedPriorities() const { return m_selectedPriorities; }
    const QSet<QString> &selectedSourceIDs() const { return m_selectedSourceIDs; }
    bool isFilterActive() const;
    bool isTagSidebarVisible() const { return m_isTagSidebarVisible; }
    bool isFlaggedFilterActive() const { return m_isFlaggedFilterActive; }
    bool isPriorityFilterActive() const { return !m_selectedPriorities.isEmpty(); }
    bool isSourceFilterActive() const { return !m_selectedSourceIDs.isEmpty(); }

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

    bool isTaskVisibleWithFilters(const WorkItem &task) const;

    /** "omnifocus", "reminders", "plaintext" or "generic", by the item's class. */
    static QString sourceIdentifier(const WorkItem &task);

Q_SIGNALS:
    /** A filter or the sidebar's visibility. */
    void filtersChanged();
    void availableTagsChanged();

private:
    void finishChange(const QString &logLine, NotificationName notification);

    NotificationCenter &m_notifications;
    UserDefaults &m_defaults;
    std::vector<AvailableTag> m_availableTags;
    QSet<QString> m_selectedTagIDs;
    QSet<EisenhowerPriority> m_selectedPriorities;
    QSet<QString> m_selectedSourceIDs;
    bool m_isTagSidebarVisible = false;
    bool m_isFlaggedFilterActive = false;
};

} // namespace vantrel
