#include "foundations/Ids.h"
#include "foundations/Log.h"
#include "foundations/TimeSlice.h"
#include "persistence/PersistenceManager.h"
#include "sources/SourceError.h"
#include "sources/plaintext/PlainTextReconciliation.h"
#include "sources/plaintext/PlainTextTaskManager.h"

#include <QCoroFuture>
#include <QElapsedTimer>
#include <QPointer>
#include <QScopeGuard>
#include <QtConcurrentRun>

#include <algorithm>

namespace vantrel {

namespace {

/** Shared, because the way back to the GUI thread copies it. */
using Told = std::shared_ptr<ReconciledTasks>;

QFuture<Told> reconcileOnWorker(std::vector<PlainTextRecord> rows, std::vector<PersistentTaskPosition> places,
                                Date now)
{
    return QtConcurrent::run([rows = std::move(rows), places = std::move(places), now]() mutable {
        return std::make_shared<ReconciledTasks>(reconcilePlainTextTasks(std::move(rows), places, now));
    });
}

void logDisagreement(const ReconciledTasks &told)
{
    constexpr qsizetype most = 5;
    constexpr qsizetype few = 3;
    if (!told.withoutRow.isEmpty()) {
        log::warning(QString::number(told.withoutRow.size()) + u" positions without task data in SQLite");
        for (const QString &id : told.withoutRow.mid(0, most)) {
            log::warning(u"  - Orphaned position ID: " + id);
        }
        log::debug(u"🔍 First few position IDs: " + told.withoutRow.mid(0, few).join(u", "));
    }
    if (!told.withoutPlace.isEmpty()) {
        log::warning(QString::number(told.withoutPlace.size()) + u" tasks in SQLite without positions!");
        // These stand at the end of all tasks, in the same order.
        const std::size_t first = told.tasks.size() - static_cast<std::size_t>(told.withoutPlace.size());
        for (qsizetype i = 0; i < std::min(most, told.withoutPlace.size()); ++i) {
            const WorkItemFields &fields = told.tasks[first + static_cast<std::size_t>(i)].fields;
            log::debug(u"⚠️ Task without position: " + fields.id + u" - " + fields.name);
        }
        log::debug(u"💾 First few task IDs from SQLite: " + told.withoutPlace.mid(0, few).join(u", "));
    }
}

} // namespace

QCoro::Task<WorkItems> PlainTextTaskManager::fetchTasks()
{
    const QPointer self(this);
    while (m_fetch) {
        const std::shared_ptr<Latch> earlier = m_fetch;
        co_await *earlier;
        if (!self) {
            co_return WorkItems();
        }
    }
    const auto turn = std::make_shared<Latch>();
    m_fetch = turn;
    const auto endTurn = qScopeGuard([self, turn] {
        if (self) {
            self->m_fetch.reset();
        }
        turn->countDown();
    });
    co_await readAndTakeOver();
    co_return self ? self->m_loadedTasks : WorkItems();
}

QCoro::Task<> PlainTextTaskManager::readAndTakeOver()
{
    log::info(QStringLiteral("🔍🔍🔍 Fetching plain text tasks from persistence 🔍🔍🔍"));
    QElapsedTimer elapsed;
    elapsed.start();
    const QPointer self(this);
    if (const Told told = co_await readStore(); self && told) {
        co_await takeOverAll(told);
    }
    if (!self) {
        co_return;
    }
    const QString count = QString::number(m_loadedTasks.size());
    const double milliseconds = static_cast<double>(elapsed.nsecsElapsed()) / 1e6;
    log::info(u"Created total of " + count + u" plain text tasks from persistence data");
    log::info(u"📊 BENCHMARK: Plain Text fetchTasks - " + QString::number(milliseconds, 'f', 1) + u" ms for " +
              count + u" tasks");
}

QCoro::Task<std::shared_ptr<ReconciledTasks>> PlainTextTaskManager::readStore()
{
    const QPointer self(this);
    expectAllTasks();
    auto reading = co_await m_persistence.readPlainTextTasks(m_mark);
    if (!self) {
        co_return Told();
    }
    if (!reading && m_persistence.isWithoutDatabase()) {
        // The user knows, and goes on with what is in memory.
        co_return Told();
    }
    if (!reading) {
        throw SourceError(QStringLiteral("PlainTextError"), 1, tr("The plain text tasks could not be read."));
    }
    if (reading->isUnchanged) {
        co_return Told();
    }
    m_mark = reading->mark;
    co_return co_await reconcileOnWorker(std::move(reading->rows), std::move(reading->places), m_clock.now());
}

QCoro::Task<> PlainTextTaskManager::takeOverAll(std::shared_ptr<ReconciledTasks> told)
{
    const QPointer self(this);
    logDisagreement(*told);
    if (!told->withoutPlace.isEmpty()) {
        // They may not get a place yet: the next fetch tries again.
        m_mark.reset();
        co_await placeAtEnd(told->withoutPlace);
    }
    if (!self) {
        co_return;
    }
    WorkItems tasks;
    tasks.reserve(told->tasks.size());
    // Growing on the way would move all entries in one piece.
    m_known.reserve(static_cast<qsizetype>(told->tasks.size()));
    TimeSlice slice;
    for (PlainTextRecord &record : told->tasks) {
        if (WorkItemPtr task = takeOver(std::move(record))) {
            tasks.push_back(std::move(task));
        }
        if (slice.isUsedUp()) {
            co_await m_clock.yieldToEventLoop();
            if (!self) {
                co_return;
            }
            slice.restart();
        }
    }
    // What follows, here and at whoever waits, takes a slice of its own.
    co_await m_clock.yieldToEventLoop();
    if (!self) {
        co_return;
    }
    replaceLoadedTasks(std::move(tasks));
    storeCompletionDates(told->withInventedCompletionDate);
    QThreadPool::globalInstance()->start([told = std::move(told)]() mutable { told.reset(); });
}

void PlainTextTaskManager::expectAllTasks()
{
    for (Known &known : m_known) {
        known.changesAtReading = known.item->changeCount();
        known.sighting = Sighting::Expected;
    }
    m_isReadingVoid = false;
    m_removedAtReading = m_removedIds.size();
}

QCoro::Task<> PlainTextTaskManager::placeAtEnd(QStringList taskIds)
{
    if (taskIds.isEmpty()) {
        co_return;
    }
    log::info(u"🔍 Creating tasks for " + QString::number(taskIds.size()) +
              u" items from metadata without positions");
    const std::optional<Home> home = homeOfNewTasks(u"🔍");
    if (!home) {
        co_return;
    }
    for (const QString &id : std::as_const(taskIds)) {
        log::debug(u"🔍 Creating position for task " + id + u" in column " + home->column.id.text());
    }
    co_await m_persistence.placeTasksAtEnd(taskIds, home->column.id, home->swimLane.id);
}

WorkItemPtr PlainTextTaskManager::takeOver(PlainTextRecord record)
{
    const QString id = record.fields.id;
    if (m_isReadingVoid || m_removedIds.contains(id)) {
        return nullptr;
    }
    Known &known = m_known[id];
    if (!known.item) {
        known.item = std::make_shared<PlainTextWorkItem>(std::move(record));
    } else if (known.sighting == Sighting::Expected && known.item->changeCount() == known.changesAtReading) {
        // The quadrant is the board's: the store of tasks does not know it.
        record.fields.eisenhowerPriority = known.item->eisenhowerPriority();
        const std::shared_ptr<PlainTextWorkItem> item = known.item;
        known.sighting = Sighting::Seen;
        item->update(record);
        return item;
    }
    known.sighting = Sighting::Seen;
    return known.item;
}

void PlainTextTaskManager::replaceLoadedTasks(WorkItems tasks)
{
    if (m_isReadingVoid || m_removedIds.size() != m_removedAtReading) {
        std::erase_if(tasks, [this](const WorkItemPtr &task) { return !m_known.contains(task->id()); });
    }
    const auto isNewer = [this](const WorkItemPtr &task) {
        return m_known.value(task->id()).sighting == Sighting::Newer;
    };
    const auto firstNewer = std::find_if_not(m_loadedTasks.rbegin(), m_loadedTasks.rend(), isNewer).base();
    tasks.insert(tasks.end(), firstNewer, m_loadedTasks.end());
    m_known.removeIf([](const auto &known) { return known.value().sighting == Sighting::Expected; });
    m_loadedTasks = std::move(tasks);
}

void PlainTextTaskManager::storeCompletionDates(const QStringList &taskIds)
{
    std::vector<PlainTextRecord> records;
    for (const QString &id : taskIds) {
        const auto known = m_known.constFind(id);
        if (known != m_known.cend() && known->item->isComplete()) {
            records.push_back(known->item->record());
        }
    }
    if (!records.empty()) {
        m_persistence.savePlainTextTasks(std::move(records));
    }
}

QCoro::Task<WorkItems> PlainTextTaskManager::forceReloadTasks()
{
    log::info(QStringLiteral("🔄🔄🔄 FORCE RELOADING plain text tasks from scratch 🔄🔄🔄"));
    const QPointer self(this);
    if (log::isDebugEnabled()) {
        co_await logStore();
        if (!self) {
            co_return WorkItems();
        }
    }
    co_return co_await fetchTasks();
}

QCoro::Task<> PlainTextTaskManager::logStore()
{
    const Date now = m_clock.now();
    const auto reading = co_await m_persistence.readPlainTextTasks();
    if (!reading) {
        co_return;
    }
    log::debug(u"📊 SQLite database contains " + QString::number(reading->rows.size()) +
               u" plain text tasks:");
    for (const PlainTextRecord &row : reading->rows) {
        const WorkItemFields &fields = row.fields;
        const Date modified = fields.modificationDate.value_or(fields.creationDate);
        const double days = (now - fields.creationDate) / SecondsPerDay;
        log::debug(u"   " + fields.id + u" - " + fields.name);
        log::debug(u"      Creation: " + fields.creationDate.description() + u", Modified: " +
                   modified.description() + u", Age: " + QString::number(days, 'f', 1) + u'd');
    }
    const auto isPlainText = [](const PersistentTaskPosition &place) {
        return sourceOf(place.id) == TaskSource::PlainText;
    };
    const std::vector<PersistentTaskPosition> &places = reading->places;
    log::debug(QString::number(std::count_if(places.begin(), places.end(), isPlainText)) +
               u" plain text positions out of " + QString::number(places.size()) + u" total positions");
    for (const PersistentTaskPosition &place : places) {
        if (isPlainText(place)) {
            log::debug(u"   " + place.id + u" in column " + place.columnId.text() + u" at " +
                       QString::number(place.position));
        }
    }
}

} // namespace vantrel
