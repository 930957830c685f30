#include "persistence/PersistenceQueue.h"

#include "foundations/Launch.h"
#include "foundations/Log.h"
#include "persistence/BackgroundSaveIndicator.h"
#include "persistence/PersistenceManager.h"

#include <QCoroSignal>
#include <QPointer>

namespace vantrel {

PersistenceQueue::PersistenceQueue(PersistenceManager &persistence, BackgroundSaveIndicator &indicator,
                                   QObject *parent)
    : QObject(parent), m_persistence(persistence), m_indicator(indicator)
{
}

void PersistenceQueue::enqueue(PersistenceOperation operation)
{
    m_operations.push_back(std::move(operation));
    m_indicator.beginSave();
    if (!m_isProcessing) {
        launch(processQueue(), QStringLiteral("PersistenceQueue"));
    }
}

QCoro::Task<> PersistenceQueue::drained()
{
    const QPointer<PersistenceQueue> self(this);
    while (self && self->m_isProcessing) {
        co_await qCoro(this, &PersistenceQueue::becameIdle);
    }
}

void PersistenceQueue::handOver()
{
    while (!m_operations.empty()) {
        m_persistence.batchSaveTaskPositions(std::move(m_operations.front().taskPositionUpdates));
        m_operations.pop_front();
        m_indicator.endSave();
    }
}

QCoro::Task<> PersistenceQueue::processQueue()
{
    const QPointer<PersistenceQueue> self(this);
    m_isProcessing = true;
    while (!m_operations.empty()) {
        const PersistenceOperation operation = std::move(m_operations.front());
        m_operations.pop_front();
        const bool isStored = co_await m_persistence.writeTaskPositions(operation.taskPositionUpdates);
        if (!self) {
            co_return;
        }
        if (isStored) {
            log::debug(u"Successfully executed persistence operation with " +
                       QString::number(operation.taskPositionUpdates.size()) + u" position updates");
        }
        m_indicator.endSave();
    }
    m_isProcessing = false;
    Q_EMIT becameIdle();
}

} // namespace vantrel
