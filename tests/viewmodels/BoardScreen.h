#pragma once

#include "../board/TestBoard.h"
#include "board/TaskBlockingManager.h"
#include "foundations/Log.h"
#include "foundations/TimeManager.h"
#include "viewmodels/BoardViewModel.h"

#include <QAbstractItemModelTester>
#include <QMap>

namespace vantrel::test {

/** A board of the first swimlane's and the second swimlane's cells, with its screen's view model. */
struct BoardScreen : TestBoard
{
    /**
     * Each entry fills a cell: its key is the column from 0, preceded by "2" for the second swimlane ("21" is
     * the second swimlane's "Doing"), its value the ids of OmniFocus tasks.
     */
    explicit BoardScreen(const QMap<QString, QString> &cells = {});

    CellId cellId(const QString &key) const;
    CellModel &model(const QString &key);
    /** The ids that a cell's model shows: "a b". */
    QString shown(const QString &key);
    WorkItemPtr task(const QString &id) { return (**this).task(id); }
    void select(const QStringList &ids);
    QString selected() { return (**this).selectionManager().selectedTaskIds().join(u' '); }
    QStringList said() const { return announcer.history(); }

    LogWriter log{LogWriter::Output::Silent};
    TaskBlockingManager blocking;
    TimeManager time{store.clock};
    BoardViewModel view;
};

} // namespace vantrel::test
