#include "support/Builders.h"
#include "ui/TestWindow.h"

#include <QAccessible>
#include <QDropEvent>
#include <QMimeData>
#include <QTest>
#include <QWheelEvent>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

const QString CardsOfToDo = u"column-To Do-task-"_s;

void collect(QQuickItem *root, const QString &prefix, bool onlyVisible, QList<QQuickItem *> &found)
{
    if (onlyVisible && !root->isVisible()) {
        return;
    }
    if (root->objectName().startsWith(prefix)) found.append(root);
    for (QQuickItem *child : root->childItems()) {
        collect(child, prefix, onlyVisible, found);
    }
}

QRectF place(const QQuickItem *item)
{
    return item->mapRectToScene(item->boundingRect());
}

} // namespace

/** The board as it is handled: scrolled, walked, dragged on and asked, by wheel, mouse and key. */
class TestBoardWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void aLongCellMakesFewCards();
    void aCellBeginsAtItsTop();
    void theWheelPassesFromACellToTheBoardAndRests();
    void theWalkKeepsTheCardInView();
    void aCardMovedByKeyStaysInView();
    void aCellStaysWhereItWasAfterADrop();
    void collapsingAndZoomingKeepTheView();
    void aPopoverIsReadAndLeftByKey();
    void aClickOnTheBlockOpensItsReason();
    void theMenuOfACardWorksByButtonAndKey();
    void aRecycledCardCarriesNoStaleState();
    void theFocusReturnsToTheCardAfterASheet();

private:
    void start(int taskCount);
    void addSwimLanes(int count);
    QList<QQuickItem *> cards() const;
    QQuickItem *card(int number) const;
    /** The view in which the cards of "To Do" lie. */
    QQuickItem *view() const;
    double scrolled() const;
    void turnWheel(const QPointF &at, int notches);
    bool isInView(const QQuickItem *item) const;
    BoardState &board() { return *(*m_window)->board; }

    std::unique_ptr<TestWindow> m_window;
};

void TestBoardWindow::init()
{
    m_window = std::make_unique<TestWindow>();
}

void TestBoardWindow::cleanup()
{
    QVERIFY2(m_window->complaints().isEmpty(), qPrintable(m_window->complaints()));
    m_window.reset();
}

/** Shows the tasks "task 0", "task 1" ... in the first column. */
void TestBoardWindow::start(int taskCount)
{
    std::vector<PlainTextRecord> records;
    std::vector<TaskPosition> places;
    m_window->services.start();
    const ColumnId column = board().columnManager().columns().front().id;
    const SwimLaneId lane = board().swimLaneManager().swimLanes().front().id;
    for (int i = 0; i < taskCount; ++i) {
        records.push_back(aPlainTextRecord(u"task %1"_s.arg(i), u"plaintext-%1"_s.arg(i)));
        places.push_back({records.back().fields.id, column, lane, i});
    }
    (*m_window)->persistence.savePlainTextTasks(records);
    (*m_window)->persistence.batchSaveTaskPositions(places);
    m_window->services.stop();
    m_window->start();
    QVERIFY(m_window->wait([this] { return card(0); }));
    m_window->picture();
}

void TestBoardWindow::addSwimLanes(int count)
{
    for (int i = 0; i < count; ++i) {
        board().swimLaneManager().addSwimLane(aSwimLane(u"Lane %1"_s.arg(i)));
    }
    m_window->services.settle();
    m_window->picture();
}

QList<QQuickItem *> TestBoardWindow::cards() const
{
    QList<QQuickItem *> found;
    collect(m_window->window().contentItem(), CardsOfToDo, true, found);
    return found;
}

QQuickItem *TestBoardWindow::card(int number) const
{
    return m_window->item(CardsOfToDo + u"plaintext-%1"_s.arg(number));
}

QQuickItem *TestBoardWindow::view() const
{
    QQuickItem *item = cards().first();
    while (!item->inherits("QQuickListView")) {
        item = item->parentItem();
    }
    return item;
}

double TestBoardWindow::scrolled() const
{
    return view()->property("scrolled").toDouble();
}

void TestBoardWindow::turnWheel(const QPointF &at, int notches)
{
    for (int i = 0; i < qAbs(notches); ++i) {
        QWheelEvent turn(at, m_window->window().mapToGlobal(at), {}, {0, notches > 0 ? -120 : 120}, {}, {},
                         Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&m_window->window(), &turn);
    }
    m_window->picture();
}

bool TestBoardWindow::isInView(const QQuickItem *item) const
{
    const QRectF window(0, 0, m_window->window().width(), m_window->window().height());
    return (place(view()) & window).adjusted(0, -1, 0, 1).contains(place(item));
}

void TestBoardWindow::aLongCellMakesFewCards()
{
    start(5000);
    qsizetype most = 0;
    for (int i = 0; i < 60; ++i) {
        turnWheel(place(view()).center(), 20);
        QList<QQuickItem *> alive;
        collect(m_window->window().contentItem(), CardsOfToDo, false, alive);
        most = std::max(most, alive.size());
    }
    QVERIFY2(scrolled() > 90000, qPrintable(QString::number(scrolled())));
    QVERIFY2(most > 3 && most <= 80, qPrintable(QString::number(most)));
}

void TestBoardWindow::aCellBeginsAtItsTop()
{
    start(40);
    QCOMPARE(scrolled(), 0.0);
    QVERIFY(isInView(card(0)));
    QCOMPARE(place(card(0)).top() - place(view()).top(), view()->property("topMargin").toDouble());
}

void TestBoardWindow::theWheelPassesFromACellToTheBoardAndRests()
{
    start(12);
    addSwimLanes(3);
    const QPointF pointer = place(view()).center();
    const double lane = place(view()).top();
    turnWheel(pointer, 1);
    QVERIFY(scrolled() > 0);
    QCOMPARE(place(view()).top(), lane);

    for (int i = 0; i < 20 && place(view()).top() == lane; ++i) {
        turnWheel(pointer, 1);
    }
    QVERIFY2(place(view()).top() < lane, "the board does not scroll behind a cell at its end");

    // Back: what comes under the pointer while the board still moves does not catch the wheel.
    const double end = scrolled();
    turnWheel(pointer, -1);
    QCOMPARE(scrolled(), end);
    QTest::qWait(350);
    turnWheel(pointer, -1);
    QVERIFY(scrolled() < end);
}

void TestBoardWindow::theWalkKeepsTheCardInView()
{
    start(40);
    for (int i = 0; i < 40; ++i) {
        m_window->press(u"Down"_s);
        QVERIFY(m_window->wait([&] { return card(i) && isInView(card(i)) && card(i)->hasActiveFocus(); }));
    }
    for (int i = 38; i >= 0; i -= 2) {
        m_window->press(u"Up"_s);
        m_window->press(u"Up"_s);
    }
    QVERIFY(m_window->wait([&] { return card(0) && isInView(card(0)); }));
}

void TestBoardWindow::aCardMovedByKeyStaysInView()
{
    start(40);
    for (int i = 0; i < 12; ++i) {
        m_window->press(u"Down"_s);
        m_window->press(u"Ctrl+Shift+Right"_s);
        m_window->press(u"Esc"_s);
    }
    const QString last = u"column-Doing-task-plaintext-11"_s;
    QVERIFY(m_window->wait([&] {
        const QQuickItem *moved = m_window->item(last);
        return moved && place(moved).bottom() <= place(view()).bottom() + 1;
    }));

    m_window->press(u"Down"_s);
    for (int i = 0; i < 6; ++i) {
        m_window->press(u"Ctrl+Shift+Down"_s);
    }
    QVERIFY(m_window->wait([&] { return card(12) && isInView(card(12)); }));
}

void TestBoardWindow::aCellStaysWhereItWasAfterADrop()
{
    start(40);
    QMimeData offer;
    const QVariantMap formats = m_window->app().board()->beginDrag(u"plaintext-0"_s);
    for (const auto &[format, text] : formats.asKeyValueRange()) {
        offer.setData(format, text.toString().toUtf8());
    }
    const QPointF end(place(view()).center().x(), place(view()).bottom() - 8);
    QDragEnterEvent enter(end.toPoint(), Qt::MoveAction, &offer, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&m_window->window(), &enter);
    QDragMoveEvent move(end.toPoint(), Qt::MoveAction, &offer, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&m_window->window(), &move);
    m_window->picture();
    QVERIFY2(scrolled() > 0, "the place where the card would land is not shown");
    QDropEvent drop(end, Qt::MoveAction, &offer, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&m_window->window(), &drop);
    m_window->app().board()->endDrag();
    m_window->services.settle();

    QVERIFY(m_window->wait([this] { return !card(0) && card(1) && isInView(card(1)); }));
    QVERIFY(qFuzzyIsNull(scrolled()));
}

void TestBoardWindow::collapsingAndZoomingKeepTheView()
{
    start(40);
    turnWheel(place(view()).center(), 5);
    const double before = scrolled();
    QVERIFY(before > 0);
    m_window->press(u"Ctrl+1"_s);
    QVERIFY(m_window->wait([this] { return cards().isEmpty(); }));
    m_window->press(u"Ctrl+1"_s);
    QVERIFY(m_window->wait([this] { return !cards().isEmpty(); }));
    QTRY_COMPARE(scrolled(), before);

    m_window->press(u"Down"_s);
    QVERIFY(m_window->wait([this] { return card(0) && isInView(card(0)); }));
    for (const char *key : {"Ctrl++", "Ctrl++", "Ctrl+-", "Ctrl+0"}) {
        m_window->press(QString::fromLatin1(key));
        m_window->picture();
        QVERIFY2(card(0) && card(0)->hasActiveFocus(), key);
    }
}

void TestBoardWindow::aPopoverIsReadAndLeftByKey()
{
    start(3);
    m_window->press(u"Down"_s);
    m_window->press(u"Tab"_s);
    m_window->press(u"Tab"_s);
    m_window->press(u"Return"_s);
    QVERIFY(m_window->wait([this] { return m_window->focusName() == u"closePopover"; }));
    const double zoom = board().zoomLevel();
    m_window->press(u"Ctrl++"_s);
    QCOMPARE(board().zoomLevel(), zoom);

    m_window->press(u"Esc"_s);
    QVERIFY(m_window->wait([this] { return card(0)->hasActiveFocus(); }));
    QVERIFY(!m_window->item(u"closePopover"_s));
}

void TestBoardWindow::aClickOnTheBlockOpensItsReason()
{
    m_window->start();
    m_window->press(u"Ctrl+N"_s);
    m_window->type(u"task"_s);
    m_window->press(u"Return"_s);
    m_window->press(u"Return"_s);
    const WorkItemPtr task = board().tasks().front();
    (*m_window)->blocking.setBlockedStatus(*task, true, u"vendor"_s);
    m_window->services.settle();
    m_window->picture();

    QQuickItem *item = m_window->item(CardsOfToDo + task->id());
    QPoint spot;
    for (int x = 0; x < item->width() && spot.isNull(); x += 4) {
        for (int y = 0; y < item->height() && spot.isNull(); y += 4) {
            int part = KanbanCardFocus::None;
            QMetaObject::invokeMethod(item, "componentAt", Q_RETURN_ARG(int, part), Q_ARG(double, x),
                                      Q_ARG(double, y));
            if (part == KanbanCardFocus::Blocked) spot = QPoint(x, y);
        }
    }
    QVERIFY(!spot.isNull());
    QTest::mouseClick(&m_window->window(), Qt::LeftButton, {}, item->mapToScene(spot).toPoint());
    QVERIFY(m_window->wait([this] { return m_window->focusName() == u"editReasonButton"; }));
    m_window->press(u"Return"_s);
    m_window->type(u"s"_s);
    m_window->press(u"Return"_s);
    QCOMPARE(task->blockReason(), std::optional(u"vendors"_s));
    m_window->click(u"unblockButton"_s);
    QVERIFY(!task->isBlocked());
    QVERIFY(m_window->wait([item] { return item->hasActiveFocus(); }));
}

void TestBoardWindow::theMenuOfACardWorksByButtonAndKey()
{
    start(2);
    QTest::mouseClick(&m_window->window(), Qt::RightButton, {}, place(card(1)).center().toPoint());
    QVERIFY(m_window->wait([this] { return m_window->window().findChild<QObject *>(u"contextMenu"_s); }));
    QCOMPARE(board().selectionManager().selectedTaskIds().size(), 1);
    const QString id = board().selectionManager().selectedTaskIds().first();
    m_window->press(u"Esc"_s);
    QVERIFY(m_window->wait([this] { return card(1)->hasActiveFocus(); }));

    // Move to Column, Doing.
    m_window->press(u"Shift+F10"_s);
    m_window->press(u"Down Down Down Right Down Return"_s);
    QVERIFY(m_window->wait([&] {
        return board().columnManager().column(board().taskPositions().find(id)->columnId)->name == u"Doing"_s;
    }));
    // Delete Task…: Return means no, and the card has the keyboard again.
    for (const bool isMeant : {false, true}) {
        m_window->press(u"Menu"_s);
        m_window->press(u"Down Down Down Down Down Down Down Down Down Return"_s);
        QVERIFY(m_window->wait([this] { return m_window->focusName() == u"cancelButton"; }));
        m_window->press(isMeant ? u"Shift+Tab Return"_s : u"Return"_s);
        QVERIFY(m_window->wait([this] { return m_window->focusName() != u"cancelButton"; }));
        QCOMPARE(board().task(id) == nullptr, isMeant);
    }
}

void TestBoardWindow::aRecycledCardCarriesNoStaleState()
{
    start(60);
    m_window->press(u"Down"_s);
    QVERIFY(card(0)->property("isSelected").toBool());
    turnWheel(place(view()).center(), 25);
    QVERIFY(!card(0));
    for (const QQuickItem *item : cards()) {
        QVERIFY2(!item->property("isSelected").toBool() && !item->hasActiveFocus() && item->opacity() == 1.0,
                 qPrintable(item->objectName()));
    }
    turnWheel(place(view()).center(), -40);
    QVERIFY(card(0) && card(0)->property("isSelected").toBool());
}

void TestBoardWindow::theFocusReturnsToTheCardAfterASheet()
{
    start(3);
    m_window->press(u"Down"_s);
    m_window->press(u"Down"_s);
    m_window->press(u"Ctrl+N"_s);
    QVERIFY(!card(1)->hasActiveFocus());
    m_window->press(u"Esc"_s);
    QVERIFY(m_window->wait([this] { return card(1)->hasActiveFocus(); }));
    m_window->press(u"Down"_s);
    QVERIFY(card(2)->hasActiveFocus());
}

} // namespace vantrel::test

QTEST_MAIN(vantrel::test::TestBoardWindow)
#include "test_board.moc"
