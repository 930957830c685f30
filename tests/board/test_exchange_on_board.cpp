#include "board/TestBoard.h"
#include "exchange/PlainTextTaskParser.h"
#include "foundations/Log.h"
#include "foundations/PlainTextWorkItem.h"
#include "support/Await.h"
#include "support/TestRegistry.h"

#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;

namespace vantrel::test {

/** Lists that come onto the board as text and leave it as text. */
class TestExchangeOnBoard : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_log = std::make_unique<LogWriter>(LogWriter::Output::Silent);
        m_board = std::make_unique<TestBoard>();
    }
    void cleanup()
    {
        m_board.reset();
        m_log.reset();
    }
    void aListComesInInItsOrderAboveWhatWasThere();
    void whatCameInIsKept();
    void aRefreshAfterwardsMovesNothing();
    void aTagJoinsThatOfTheBoard();
    void aCompletedLineIsCompletedNow();
    void scopes_data();
    void scopes();
    void groupsStandUnderTheirNames();
    void aClipboardThatRefusesIsNoSuccess();
    void exportAndImportAreInverse();

private:
    int import(const QString &text, std::optional<ColumnId> column = {}, std::optional<SwimLaneId> lane = {})
    {
        const ImportResult result =
            await((*m_board)->importPlainTextTasks(PlainTextTaskParser::parseTaskList(text), column, lane));
        m_board->settle();
        return result.isStored ? result.count : -1;
    }
    QStringList names(ColumnId column, SwimLaneId lane)
    {
        QStringList names;
        for (const WorkItemPtr &task : (*m_board)->cell(lane, column)) {
            names.append(task->name());
        }
        return names;
    }
    QString exported(ExportScope scope, ExportFormat format = ExportFormat::PlainCheckbox)
    {
        return (*m_board)->exportText(scope, format, m_board->doing(), m_board->second());
    }

    std::unique_ptr<LogWriter> m_log;
    std::unique_ptr<TestBoard> m_board;
};

void TestExchangeOnBoard::aListComesInInItsOrderAboveWhatWasThere()
{
    QCOMPARE(import(u"- [ ] old 1\n- [ ] old 2"_s), 2);
    QCOMPARE(import(u"- [ ] a\r\n\r\n* b\n- c #tag\n\t- [x] d"_s), 4);
    QCOMPARE(names(m_board->todo(), m_board->first()),
             (QStringList{u"a"_s, u"* b"_s, u"c"_s, u"d"_s, u"old 1"_s, u"old 2"_s}));
}

void TestExchangeOnBoard::whatCameInIsKept()
{
    import(u"old"_s, m_board->doing(), m_board->second());
    import(u"- [ ] a #Home\n- [ ] b\n- [ ] c"_s, m_board->doing(), m_board->second());
    m_board->restart();
    m_board->organize(await(m_board->plainText().fetchTasks()));

    QCOMPARE(names(m_board->doing(), m_board->second()), (QStringList{u"a"_s, u"b"_s, u"c"_s, u"old"_s}));
    QCOMPARE((*m_board)->cell(m_board->second(), m_board->doing()).front()->tagName(), u"Home"_s);
}

void TestExchangeOnBoard::aRefreshAfterwardsMovesNothing()
{
    await(m_board->repository().fetchTasks(false));
    import(u"a\nb"_s, m_board->doing(), m_board->second());
    const FetchedTasks fetched = await(m_board->repository().fetchTasks(false));
    m_board->organize(fetched.tasks);
    QCOMPARE(names(m_board->doing(), m_board->second()), (QStringList{u"a"_s, u"b"_s}));
}

void TestExchangeOnBoard::aTagJoinsThatOfTheBoard()
{
    import(u"a #Home"_s);
    import(u"b #home"_s);
    const WorkItems tasks = (*m_board)->cell(m_board->first(), m_board->todo());
    QCOMPARE(tasks.at(0)->name(), u"b"_s);
    QCOMPARE(tasks.at(0)->tag(), tasks.at(1)->tag());
    QCOMPARE(tasks.at(0)->tagName(), u"Home"_s);
    QCOMPARE(dynamic_cast<const PlainTextWorkItem &>(*tasks.at(0)).hashtags(), QStringList{u"home"_s});
}

void TestExchangeOnBoard::aCompletedLineIsCompletedNow()
{
    import(u"- [x] a\n- [ ] b"_s);
    const WorkItems tasks = (*m_board)->cell(m_board->first(), m_board->todo());
    QCOMPARE(tasks.at(0)->completionDate(), m_board->store.clock.now());
    QVERIFY(!tasks.at(1)->completionDate());
}

void TestExchangeOnBoard::scopes_data()
{
    QTest::addColumn<ExportScope>("scope");
    QTest::addColumn<QString>("text");

    QTest::newRow("all") << ExportScope::AllTasks << u"- [ ] a #t\n- [ ] r\n- [ ] b #u\n- [ ] c"_s;
    QTest::newRow("plain text") << ExportScope::PlainTextTasks << u"- [ ] a #t\n- [ ] b #u\n- [ ] c"_s;
    // What has no tag stays.
    QTest::newRow("visible") << ExportScope::VisibleTasks << u"- [ ] a #t\n- [ ] r\n- [ ] c"_s;
    QTest::newRow("selected") << ExportScope::SelectedTasks << u"- [ ] c"_s;
    QTest::newRow("column") << ExportScope::SelectedColumn << u"- [ ] b #u\n- [ ] c"_s;
    QTest::newRow("swimlane") << ExportScope::SelectedSwimLane << u"- [ ] c"_s;
}

void TestExchangeOnBoard::scopes()
{
    QFETCH(ExportScope, scope);
    QFETCH(QString, text);
    (*m_board)->addTask(makeTask(u"reminder_r"_s, u"r"_s), m_board->todo(), m_board->first());
    import(u"a #t"_s);
    import(u"b #u"_s, m_board->doing());
    import(u"c"_s, m_board->doing(), m_board->second());
    (*m_board)->filterManager().toggleTagFilter(u"tag-t"_s);
    const WorkItems second = (*m_board)->cell(m_board->second(), m_board->doing());
    (*m_board)->selectTask(second.front()->id(), false);

    QCOMPARE(exported(scope), text);
    const ExportResult result = (*m_board)->exportTasksToClipboard(scope, ExportFormat::PlainCheckbox,
                                                                   m_board->doing(), m_board->second());
    QVERIFY(result.success);
    QCOMPARE(result.count, text.count(u'\n') + 1);
    QCOMPARE(m_board->desktop.clipboard.content, text);
    QCOMPARE(m_board->announcer.history().constLast(), u"Exported %1 tasks to clipboard"_s.arg(result.count));
}

void TestExchangeOnBoard::groupsStandUnderTheirNames()
{
    import(u"a"_s);
    import(u"b"_s, m_board->done());
    import(u"c"_s, {}, m_board->second());
    QCOMPARE(exported(ExportScope::AllTasks, ExportFormat::ColumnOrganized),
             u"# To Do\n\n- [ ] a\n- [ ] c\n\n# Done\n\n- [ ] b"_s);
    QCOMPARE(exported(ExportScope::AllTasks, ExportFormat::SwimLaneOrganized),
             u"# Default\n\n- [ ] a\n- [ ] b\n\n# Second\n\n- [ ] c"_s);
}

void TestExchangeOnBoard::aClipboardThatRefusesIsNoSuccess()
{
    QVERIFY(!(*m_board)->quickExportPlainTextTasks().success);
    import(u"a"_s);
    m_board->desktop.clipboard.refuses = true;
    QVERIFY(!(*m_board)->quickExportPlainTextTasks().success);
    QCOMPARE(m_board->announcer.history().filter(u"clipboard"_s), QStringList());
    m_board->desktop.clipboard.refuses = false;
    QVERIFY((*m_board)->quickExportPlainTextTasks().success);
    QCOMPARE(m_board->announcer.history().constLast(), u"Exported 1 plain text tasks to clipboard"_s);
}

void TestExchangeOnBoard::exportAndImportAreInverse()
{
    const quint32 seed = QRandomGenerator::global()->generate();
    qInfo("seed %u", seed);
    QRandomGenerator random(seed);
    const QStringList words{u"Müsli"_s,    u"e\u0301t\u00e9"_s,
                            u"[draft]"_s,  u"- [x]"_s,
                            u"שלום"_s,     u"🎉"_s,
                            u"a\u00a0b"_s, u"C#"_s,
                            u"due"_s,      u"#x1"_s,
                            u"#Äß"_s,      u"x"_s};
    for (int round = 0; round < 40; ++round) {
        QStringList lines;
        for (int n = 1 + random.bounded(PlainTextTaskParser::MaximumLines); n > 0; --n) {
            QStringList line{random.bounded(2) ? u"- [ ]"_s : u"- [x]"_s};
            for (int count = 1 + random.bounded(4); count > 0; --count) {
                line.append(words.at(random.bounded(static_cast<int>(words.size()))));
            }
            lines.append(line.join(u' '));
        }
        const auto contents = [this] {
            std::vector<std::tuple<QString, QStringList, bool, std::optional<QString>>> all;
            for (const WorkItemPtr &task : (*m_board)->tasks()) {
                const auto &item = dynamic_cast<const PlainTextWorkItem &>(*task);
                all.emplace_back(item.name(), item.hashtags(), item.isComplete(), item.tagName());
            }
            return all;
        };
        m_board = std::make_unique<TestBoard>();
        QCOMPARE(import(lines.join(u'\n')), static_cast<int>(lines.size()));
        const auto before = contents();
        const QString text = exported(ExportScope::PlainTextTasks);

        m_board = std::make_unique<TestBoard>();
        import(text);
        QCOMPARE(exported(ExportScope::PlainTextTasks), text);
        QVERIFY(contents() == before);
    }
}

VANTREL_REGISTER_TEST(TestExchangeOnBoard)

} // namespace vantrel::test

#include "test_exchange_on_board.moc"
