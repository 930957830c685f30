#include "foundations/Log.h"
#include "support/Await.h"
#include "support/RawDatabase.h"
#include "support/TestRegistry.h"
#include "support/TestStore.h"

#include <QTest>

namespace vantrel::test {

using namespace Qt::StringLiterals;

/** What the board journal tells of the changes of the store. */
class TestBoardJournal : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_log = std::make_unique<LogWriter>(LogWriter::Output::Silent);
        m_store = std::make_unique<TestStore>();
        m_columns = Column::defaultColumns();
        m_lanes = {SwimLane::defaultSwimLane(), SwimLane::defaultSwimLane()};
        m_lanes[1].stableId = u"home"_s;
        store().saveBoardConfiguration(m_columns);
        store().saveSwimLaneConfiguration(m_lanes);
    }

    void tellsOfEveryChange();
    void tellsTheTimeAndBothIdentities();
    void countsOnAfterARestart();
    void costsNoChangeWhenItCannotBeWritten();

private:
    PersistenceManager &store() { return **m_store; }
    void place(int column, int swimLane, int position = 0)
    {
        store().saveTaskPosition(u"t"_s, m_columns.at(column).id, position, m_lanes.at(swimLane).id);
    }
    void saveTask(bool isComplete)
    {
        PlainTextRecord record;
        record.fields.id = u"plaintext-1"_s;
        record.fields.isComplete = isComplete;
        store().savePlainTextTask(record);
    }
    /** "what from>to", places as the stable ids. */
    QStringList told()
    {
        static const QStringList names{u"column"_s, u"lane"_s, u"complete"_s, u"blocked"_s, u"priority"_s};
        QStringList texts;
        for (const JournalEntry &entry : store().loadJournal(Date())) {
            const bool isPlace =
                entry.what == JournalSubject::Column || entry.what == JournalSubject::SwimLane;
            texts.append(names.at(static_cast<int>(entry.what)) + u' ' +
                         (isPlace ? entry.fromStableId : entry.from).value_or(u"-"_s) + u'>' +
                         (isPlace ? entry.toStableId : entry.to).value_or(u"-"_s));
        }
        return texts;
    }

    std::unique_ptr<LogWriter> m_log;
    std::unique_ptr<TestStore> m_store;
    std::vector<Column> m_columns;
    std::vector<SwimLane> m_lanes;
};

void TestBoardJournal::tellsOfEveryChange()
{
    const std::vector<std::pair<std::function<void()>, QStringList>> rows{
        {[&] { place(1, 0); }, {u"column default_todo>default_doing"_s}},
        {[&] { place(0, 1); }, {u"lane default_swimlane>home"_s}},
        {[&] { place(0, 0, 5); }, {}},
        {[&] {
             store().saveTaskAsBlocked(u"t"_s, u"a"_s);
             store().saveTaskAsBlocked(u"t"_s, u"b"_s);
             store().removeTaskFromBlocked(u"t"_s);
         },
         {u"blocked false>true"_s, u"blocked true>false"_s}},
        // Before it has a place.
        {[&] { store().saveTaskAsBlocked(u"nowhere"_s, {}); }, {u"blocked false>true"_s}},
        {[&] {
             store().saveTaskAsBlocked(u"t"_s, {});
             store().deleteTaskPosition(u"t"_s);
         },
         {u"blocked false>true"_s, u"column default_todo>-"_s, u"lane default_swimlane>-"_s,
          u"blocked true>false"_s}},
        {[&] {
             store().saveEisenhowerPriority(u"t"_s, EisenhowerPriority::DoNow);
             store().saveEisenhowerPriority(u"t"_s, EisenhowerPriority::DoNow);
             store().saveEisenhowerPriority(u"t"_s, EisenhowerPriority::Delegate);
             store().deleteEisenhowerPriority(u"t"_s);
         },
         {u"priority ->doNow"_s, u"priority doNow>delegate"_s, u"priority delegate>-"_s}},
        {[&] {
             saveTask(false);
             saveTask(true);
             saveTask(true);
             saveTask(false);
             store().journalCompletion(u"plaintext-1"_s, true);
         },
         {u"complete false>true"_s, u"complete true>false"_s}},
        {[&] { saveTask(true); }, {u"complete ->true"_s}},
        {[&] { store().journalCompletion(u"reminder_1"_s, true); }, {u"complete false>true"_s}},
        {[&] { store().moveColumnTaskPositions(m_columns.at(0).id, m_columns.at(1).id); },
         {u"column default_todo>default_doing"_s}},
    };
    for (const auto &[change, entries] : rows) {
        init();
        place(0, 0);
        change();
        const QStringList arrival{u"column ->default_todo"_s, u"lane ->default_swimlane"_s};
        QCOMPARE(told(), arrival + entries);
    }
}

void TestBoardJournal::tellsTheTimeAndBothIdentities()
{
    place(0, 0);
    m_store->clock.advance(100.0);
    const Date moved = m_store->clock.now();
    place(1, 0);

    const std::vector<JournalEntry> entries = store().loadJournal(moved);
    QCOMPARE(entries.size(), 1u);
    const JournalEntry expected{entries.front().number,    u"t"_s,
                                JournalSubject::Column,    m_columns.at(0).id.text(),
                                m_columns.at(1).id.text(), m_columns.at(0).stableId,
                                m_columns.at(1).stableId,  moved};
    QCOMPARE(entries.front(), expected);
    QVERIFY(store().loadJournal(moved + 1.0).empty());
}

void TestBoardJournal::countsOnAfterARestart()
{
    place(0, 0);
    const qint64 last = store().loadJournal(Date()).back().number;
    await(store().drained());
    QVERIFY(RawDatabase(m_store->databasePath()).run(u"DELETE FROM boardJournal"_s));
    m_store->reopen();
    place(1, 0);
    QCOMPARE(store().loadJournal(Date()).front().number, last + 1);
}

void TestBoardJournal::costsNoChangeWhenItCannotBeWritten()
{
    place(0, 0);
    await(store().drained());
    QVERIFY(RawDatabase(m_store->databasePath()).run(u"DROP TABLE boardJournal"_s));

    place(1, 0);

    QCOMPARE(store().loadAllTaskPositions().front().columnId, m_columns.at(1).id);
    QCOMPARE(LogWriter::recentMessages().filter(u"The board journal is given up for this run"_s).size(), 1);
    QVERIFY(store().problems().empty());
    m_store->reopen();
    place(0, 0);
    QCOMPARE(told(), QStringList{u"column default_doing>default_todo"_s});
}

VANTREL_REGISTER_TEST(TestBoardJournal)

} // namespace vantrel::test

#include "test_board_journal.moc"
