#include "support/RawDatabase.h"
#include "ui/TestWindow.h"

#include <QAccessible>
#include <QDropEvent>
#include <QMap>
#include <QMimeData>
#include <QTest>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

/** The names of the tasks of each column, from top to bottom. */
using Board = QMap<QString, QStringList>;

void collect(QQuickItem *root, const std::function<bool(QQuickItem *)> &isMeant, QList<QQuickItem *> &found)
{
    if (!root->isVisible()) {
        return;
    }
    if (isMeant(root)) {
        found.append(root);
    }
    for (QQuickItem *child : root->childItems()) {
        collect(child, isMeant, found);
    }
}

QString spokenName(QQuickItem *item)
{
    return QAccessible::queryAccessibleInterface(item)->text(QAccessible::Name);
}

QRectF place(const QQuickItem *item)
{
    return item->mapRectToScene(item->boundingRect());
}

/** True if `part` stands somewhere in `whole`, and is empty only if `whole` is. */
bool isRunOf(const QStringList &part, const QStringList &whole)
{
    const qsizetype start = part.isEmpty() ? -1 : whole.indexOf(part.first());
    return start >= 0 ? whole.mid(start, part.size()) == part : part.isEmpty() && whole.isEmpty();
}

} // namespace

/** The story of a first day: typed, walked and dropped on the window, and compared with the database. */
class TestFirstDay : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsTypedAndMovedIsShownAndKept();

private:
    // What the user does
    void typeTasks(int count);
    void drag(const QString &task, const QString &column, double height);
    void expect(const QString &task, const QString &column, qsizetype index);

    // What is there
    QList<QQuickItem *> seen(const std::function<bool(QQuickItem *)> &isMeant);
    QQuickItem *cell(const QString &column);
    /** The cards of a column that can be seen, from top to bottom. */
    QList<QQuickItem *> cards(const QString &column);
    bool isShown();
    Board stored();
    QStringList storedAsComplete();
    void check();

    std::unique_ptr<TestWindow> m_window;
    Board m_expected{{u"To Do"_s, {}}, {u"Doing"_s, {}}, {u"Done"_s, {}}};
};

void TestFirstDay::typeTasks(int count)
{
    for (int i = 1; i <= count; ++i) {
        m_window->press(u"Ctrl+N"_s);
        m_window->type(u"task %1"_s.arg(i));
        m_window->press(u"Return"_s);
        m_window->press(u"Return"_s);
        m_expected[u"To Do"_s].append(u"task %1"_s.arg(i));
        QCOMPARE((*m_window)->board->taskCount(), i);
    }
}

/** Drops the card on a column, at a height from 0 to 1, in the steps in which a desktop tells of a drag. */
void TestFirstDay::drag(const QString &task, const QString &column, double height)
{
    QString id;
    for (const WorkItemPtr &item : (*m_window)->board->tasks()) {
        id = item->name() == task ? item->id() : id;
    }
    QMimeData offer;
    const QVariantMap formats = m_window->app().board()->beginDrag(id);
    for (const auto &[format, text] : formats.asKeyValueRange()) {
        offer.setData(format, text.toString().toUtf8());
    }
    const QRectF target = place(cell(column));
    const QPointF point(target.center().x(), target.top() + 1 + (target.height() - 2) * height);
    QDragEnterEvent enter(point.toPoint(), Qt::MoveAction, &offer, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&m_window->window(), &enter);
    QDragMoveEvent move(point.toPoint(), Qt::MoveAction, &offer, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&m_window->window(), &move);
    QVERIFY(move.isAccepted());
    QTest::qWait(50);
    QDropEvent drop(point, Qt::MoveAction, &offer, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&m_window->window(), &drop);
    QVERIFY(drop.isAccepted());
    m_window->app().board()->endDrag();
}

void TestFirstDay::expect(const QString &task, const QString &column, qsizetype index)
{
    for (QStringList &names : m_expected) {
        names.removeAll(task);
    }
    m_expected[column].insert(index, task);
}

QList<QQuickItem *> TestFirstDay::seen(const std::function<bool(QQuickItem *)> &isMeant)
{
    QList<QQuickItem *> found;
    collect(m_window->window().contentItem(), isMeant, found);
    return found;
}

QQuickItem *TestFirstDay::cell(const QString &column)
{
    return seen([&](QQuickItem *item) {
               QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(item);
               return spoken && spoken->role() == QAccessible::List && spokenName(item) == column;
           })
        .value(0);
}

QList<QQuickItem *> TestFirstDay::cards(const QString &column)
{
    const QRectF view = place(cell(column));
    QList<QQuickItem *> found = seen([&](QQuickItem *item) {
        return item->objectName().startsWith(u"column-" + column + u"-task-") && place(item).intersects(view);
    });
    std::sort(found.begin(), found.end(),
              [](const QQuickItem *a, const QQuickItem *b) { return place(a).y() < place(b).y(); });
    return found;
}

/** What can be seen of each cell is a run of its tasks, without holes. */
bool TestFirstDay::isShown()
{
    QSet<int> distances;
    for (const auto &[column, expected] : m_expected.asKeyValueRange()) {
        const QList<QQuickItem *> shown = cards(column);
        QStringList names;
        for (qsizetype i = 0; i < shown.size(); ++i) {
            names.append(spokenName(shown[i]));
            if (i > 0) {
                distances.insert(qRound(place(shown[i]).top() - place(shown[i - 1]).bottom()));
            }
        }
        if (!isRunOf(names, expected)) {
            return false;
        }
    }
    return distances.size() <= 1;
}

Board TestFirstDay::stored()
{
    Board board;
    const RawDatabase database(m_window->services.databasePath());
    for (const Column &column : (*m_window)->board->columnManager().columns()) {
        board[column.name] = database.rows(
            u"SELECT name FROM plainTextTasks JOIN taskPositions USING (id) WHERE columnId = '" +
            column.id.text() + u"' ORDER BY position");
    }
    return board;
}

QStringList TestFirstDay::storedAsComplete()
{
    return RawDatabase(m_window->services.databasePath())
        .rows(
            u"SELECT name FROM plainTextTasks JOIN taskPositions USING (id) WHERE isComplete ORDER BY position"_s);
}

void TestFirstDay::check()
{
    QVERIFY(m_window->wait([this] { return isShown(); }));
    QCOMPARE(stored(), m_expected);
    QCOMPARE(storedAsComplete(), m_expected[u"Done"_s]);
}

void TestFirstDay::whatIsTypedAndMovedIsShownAndKept()
{
    m_window = std::make_unique<TestWindow>();
    m_window->services.desktop.appearance.setPrefersReducedMotion(false);
    m_window->start();
    check();
    typeTasks(20);
    check();

    // By key
    m_window->press(u"Down"_s);
    m_window->press(u"Down"_s);
    m_window->press(u"Ctrl+Shift+Right"_s);
    expect(u"task 2"_s, u"Doing"_s, 0);
    check();
    m_window->press(u"Ctrl+Shift+Right"_s);
    expect(u"task 2"_s, u"Done"_s, 0);
    check();
    QTest::mouseClick(&m_window->window(), Qt::LeftButton, {},
                      place(cards(u"To Do"_s)[1]).center().toPoint());
    m_window->press(u"Ctrl+Shift+Down"_s);
    expect(u"task 3"_s, u"To Do"_s, 2);
    check();
    m_window->press(u"Ctrl+Shift+Return"_s);
    expect(u"task 3"_s, u"Done"_s, 0);
    check();

    // By dropping
    drag(u"task 4"_s, u"Doing"_s, 0.9);
    expect(u"task 4"_s, u"Doing"_s, 0);
    check();
    drag(u"task 1"_s, u"Done"_s, 0.9);
    expect(u"task 1"_s, u"Done"_s, 0);
    check();
    drag(u"task 7"_s, u"To Do"_s, 0.0);
    expect(u"task 7"_s, u"To Do"_s, 0);
    check();
    const QList<QQuickItem *> two = cards(u"To Do"_s);
    QTest::mouseClick(&m_window->window(), Qt::LeftButton, {}, place(two[0]).center().toPoint());
    QTest::mouseClick(&m_window->window(), Qt::LeftButton, Qt::ControlModifier,
                      place(two[1]).center().toPoint());
    drag(u"task 7"_s, u"Doing"_s, 0.0);
    expect(u"task 5"_s, u"Doing"_s, 0);
    expect(u"task 7"_s, u"Doing"_s, 0);
    check();

    m_window->press(u"Ctrl+R"_s);
    m_window->services.advance(2.0);
    check();
    m_window->restart();
    check();
    QVERIFY2(m_window->complaints().isEmpty(), qPrintable(m_window->complaints()));
}

} // namespace vantrel::test

QTEST_MAIN(vantrel::test::TestFirstDay)
#include "test_first_day.moc"
