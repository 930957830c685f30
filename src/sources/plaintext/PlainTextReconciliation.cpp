#include "sources/plaintext/PlainTextReconciliation.h"

#include "foundations/Ids.h"
#include "foundations/Log.h"

#include <QHash>

#include <utility>

namespace vantrel {

namespace {

/** One pass over the two tables. */
class Reconciliation
{
public:
    Reconciliation(std::vector<PlainTextRecord> rows, Date now)
        : m_rows(std::move(rows)), m_isUsed(m_rows.size()), m_now(now), m_isVerbose(log::isDebugEnabled())
    {
        m_rowOf.reserve(static_cast<qsizetype>(m_rows.size()));
        for (std::size_t i = 0; i < m_rows.size(); ++i) {
            m_rowOf.insert(m_rows[i].fields.id, i);
        }
        m_result.tasks.reserve(m_rows.size());
    }

    void addPlace(const PersistentTaskPosition &place);
    /** All rows that no place has named. */
    void addRemainingRows();
    ReconciledTasks takeResult() { return std::move(m_result); }

private:
    void completeRow(PlainTextRecord &row);
    static PlainTextRecord standIn(const PersistentTaskPosition &place);

    std::vector<PlainTextRecord> m_rows;
    std::vector<bool> m_isUsed;
    QHash<QString, std::size_t> m_rowOf;
    Date m_now;
    bool m_isVerbose;
    ReconciledTasks m_result;
};

void Reconciliation::addPlace(const PersistentTaskPosition &place)
{
    const auto found = m_rowOf.constFind(place.id);
    if (found == m_rowOf.cend()) {
        m_result.withoutRow.append(place.id);
        m_result.tasks.push_back(standIn(place));
        return;
    }
    m_isUsed[*found] = true;
    PlainTextRecord &row = m_rows[*found];
    completeRow(row);
    if (!row.fields.modificationDate) {
        row.fields.modificationDate = place.lastUpdated;
    }
    row.fields.isBlocked = place.isBlocked;
    row.fields.blockReason = place.blockReason;
    if (m_isVerbose) {
        log::debug(u"👉 Found SQLite data for task ID: " + place.id + u", Name: '" + row.fields.name + u'\'');
        log::debug(u"👉 Using task name: '" + row.fields.name + u"' for ID: " + place.id);
        log::debug(u"🔍 Task " + row.fields.name + u" creation date: " +
                   row.fields.creationDate.description());
    }
    m_result.tasks.push_back(std::move(row));
}

void Reconciliation::addRemainingRows()
{
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        if (m_isUsed[i]) {
            continue;
        }
        PlainTextRecord &row = m_rows[i];
        completeRow(row);
        if (!row.fields.modificationDate) {
            row.fields.modificationDate = m_now;
        }
        if (m_isVerbose) {
            const double days = (m_now - row.fields.creationDate) / SecondsPerDay;
            log::debug(u"🔍 Creating task for SQLite data: " + row.fields.id + u" - " + row.fields.name);
            log::debug(u"🔍 Task without position " + row.fields.name + u" has creation date: " +
                       row.fields.creationDate.description());
            log::debug(u"🔍    Age would be: " + QString::number(days, 'f', 1) + u" days");
        }
        m_result.withoutPlace.append(row.fields.id);
        m_result.tasks.push_back(std::move(row));
    }
}

void Reconciliation::completeRow(PlainTextRecord &row)
{
    WorkItemFields &fields = row.fields;
    if (!fields.isComplete) {
        fields.completionDate.reset();
    } else if (!fields.completionDate) {
        fields.completionDate = m_now;
        m_result.withInventedCompletionDate.append(fields.id);
    }
    if (!fields.tag && !row.hashtags.isEmpty()) {
        const QString &name = row.hashtags.constFirst();
        fields.tag = Tag{u"tag-" + name.toLower(), name};
    }
    if (!row.originalText) {
        row.originalText = (fields.isComplete ? u"- [x] " : u"- [ ] ") + fields.name;
    }
}

PlainTextRecord Reconciliation::standIn(const PersistentTaskPosition &place)
{
    log::warning(u"🚨 No SQLite data found for task ID: " + place.id);
    PlainTextRecord task;
    task.fields.id = place.id;
    task.fields.name = u"Imported Task " + place.id.right(8);
    // One day old, so that the task shows an age.
    task.fields.creationDate = place.lastUpdated - SecondsPerDay;
    task.fields.modificationDate = place.lastUpdated;
    task.fields.isBlocked = place.isBlocked;
    task.fields.blockReason = place.blockReason;
    task.originalText = u"- [ ] " + task.fields.name;
    return task;
}

} // namespace

ReconciledTasks reconcilePlainTextTasks(std::vector<PlainTextRecord> rows,
                                        const std::vector<PersistentTaskPosition> &places, Date now)
{
    Reconciliation reconciliation(std::move(rows), now);
    for (const PersistentTaskPosition &place : places) {
        if (sourceOf(place.id) == TaskSource::PlainText) {
            reconciliation.addPlace(place);
        }
    }
    reconciliation.addRemainingRows();
    return reconciliation.takeResult();
}

} // namespace vantrel
