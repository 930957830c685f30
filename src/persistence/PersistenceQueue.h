#pragma once

#include "foundations/TaskPosition.h"

#include <QCoroTask>
#include <QObject>

#include <deque>
#include <vector>

namespace vantrel {

class BackgroundSaveIndicator;
class PersistenceManager;

/** Placements that one move changed: stored together or not at all. */
struct PersistenceOperation
{
    std::vector<TaskPosition> taskPositionUpdates;
};

/**
 * Stores the placements of moves in the background, one operation after the other and never merged, so that
 * the user can go on moving. GUI thread; owned by BoardState.
 */
class PersistenceQueue : public QObject
{
    Q_OBJECT
public:
    PersistenceQueue(PersistenceManager &persistence, BackgroundSaveIndicator &indicator,
                     QObject *parent = nullptr);

    void enqueue(PersistenceOperation operation);

    bool isProcessing() const { return m_isProcessing; }
    qsizetype waitingOperations() const { return static_cast<qsizetype>(m_operations.size()); }

    /** Resumes when nothing is waiting or being written; at once if that is so already. */
    QCoro::Task<> drained();

    /**
     * Hands all waiting operations to the store at once, in their order. For the end of the program, when no
     * event loop runs that could bring them there one by one.
     */
    void handOver();

Q_SIGNALS:
    void becameIdle();

private:
    QCoro::Task<> processQueue();

    PersistenceManager &m_persistence;
    BackgroundSaveIndicator &m_indicator;
    std::deque<PersistenceOperation> m_operations;
    bool m_isProcessing = false;
};

} // namespace vantrel
