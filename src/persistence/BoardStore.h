#pragma once

#include "persistence/BlockStore.h"
#include "persistence/Database.h"
#include "persistence/FileCacheStore.h"
#include "persistence/PlainTextTaskStore.h"
#include "persistence/PositionStore.h"
#include "persistence/PriorityStore.h"

namespace vantrel {

/** The database with all its tables. Everything but the queue is for the database thread. */
struct BoardStore
{
    using ProblemHandler = std::function<void(const StorageProblem &)>;

    /** The handlers are called on the database thread. */
    BoardStore(QString path, QByteArray vfsName, ProblemHandler problemFound,
               std::function<void()> writingRecovered)
        : database(std::move(path), std::move(vfsName),
                   {std::move(problemFound), std::move(writingRecovered), [this] {
                        positions.forgetLastRead();
                    }})
    {
    }

    /** Plain text tasks deleted in this run: a write that was under way must not bring one back. */
    QSet<QString> deletedTasks;
    PositionStore positions{database, deletedTasks};
    BlockStore blocks{database, deletedTasks};
    PriorityStore priorities{database};
    PlainTextTaskStore plainTextTasks{database, deletedTasks};
    FileCacheStore fileCache{database};
    /** Last: its remaining jobs run when it goes, and need the tables. */
    Database database;
};

} // namespace vantrel
