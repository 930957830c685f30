#include "features/Story.h"
#include "support/FaultyVfs.h"
#include "support/RawDatabase.h"
#include "support/TestFiles.h"
#include "support/TestRegistry.h"
#include "viewmodels/AppViewModel.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <sqlite3.h>

using namespace Qt::StringLiterals;
using namespace vantrel;
using namespace vantrel::test;

namespace {

/** The files of the story's folder whose names match. */
QStringList filesLike(const Story &story, const QString &pattern)
{
    return QDir(story.config.directory).entryList({pattern}, QDir::Files, QDir::Name);
}

/** Has the file at `path`, an array or an object with one array in it, changed by `change`. */
void editRecords(const QString &path, const std::function<void(QJsonArray &)> &change)
{
    QJsonDocument document = QJsonDocument::fromJson(contentOf(path));
    if (document.isArray()) {
        QJsonArray records = document.array();
        change(records);
        document.setArray(records);
    } else {
        QJsonObject object = document.object();
        for (auto member = object.begin(); member != object.end(); ++member) {
            if (member->isArray()) {
                QJsonArray records = member->toArray();
                change(records);
                *member = records;
            }
        }
        document.setObject(object);
    }
    writeFile(path, document.toJson());
}

} // namespace

/** Files that were edited by hand, torn, or lie where nothing can be written. */
class TestDamagedStorage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aColumnAndASwimLaneAddedByHandAreShown()
    {
        Story story;
        story.start();
        story.createTask(u"a"_s);
        story.stop();
        editRecords(story.boardFilePath(), [](QJsonArray &columns) {
            QJsonObject review = columns.at(1).toObject();
            review[u"id"_s] = u"5E2B7B0A-93A5-4F0B-8C0B-3B6C6D6E0001"_s;
            review[u"name"_s] = u"Review"_s;
            review[u"position"_s] = 2;
            review[u"stableId"_s] = u"review"_s;
            columns.insert(2, review);
            QJsonObject done = columns.at(3).toObject();
            done[u"position"_s] = 3;
            columns[3] = done;
        });
        editRecords(story.swimLanesFilePath(), [](QJsonArray &lanes) {
            QJsonObject home = lanes.at(0).toObject();
            home[u"id"_s] = u"5E2B7B0A-93A5-4F0B-8C0B-3B6C6D6E0002"_s;
            home[u"name"_s] = u"Home"_s;
            home[u"position"_s] = 1;
            home[u"stableId"_s] = u"home"_s;
            lanes.append(home);
        });

        story.start();

        QCOMPARE(story.columns(), (QStringList{u"To Do"_s, u"Doing"_s, u"Review"_s, u"Done"_s}));
        QCOMPARE(story.swimLanes(), (QStringList{u"Default"_s, u"Home"_s}));
        QCOMPARE(story.shownIn(u"To Do"_s), QStringList{u"a"_s});
        story.move(u"a"_s, u"Review"_s);
        story.settle();
        story.restart();
        QCOMPARE(story.shownIn(u"Review"_s), QStringList{u"a"_s});
    }

    void aBrokenFileIsKeptAsideAndNamed_data()
    {
        QTest::addColumn<bool>("isBoardFile");
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("columns, torn") << true << QByteArray("[{\"id\": \"5E2B7B");
        QTest::newRow("columns, of another program") << true << QByteArray("{\"hello\": [1, 2]}");
        QTest::newRow("swimlanes, empty") << false << QByteArray();
    }

    /** The user's columns are in that file, and the tasks of yesterday in the database beside it. */
    void aBrokenFileIsKeptAsideAndNamed()
    {
        QFETCH(const bool, isBoardFile);
        QFETCH(const QByteArray, content);
        Story story;
        story.start();
        story.createTasks({u"a"_s, u"b"_s});
        story.move(u"b"_s, u"Doing"_s);
        story.settle();
        story.stop();
        const QString placesSql =
            u"SELECT id, columnId, swimLaneId, position FROM taskPositions ORDER BY id"_s;
        const QStringList places = RawDatabase(story.databasePath()).rows(placesSql);
        const QString path = isBoardFile ? story.boardFilePath() : story.swimLanesFilePath();
        writeFile(path, content);

        story.start();

        QCOMPARE(story->board->loadingState(), BoardLoadingState::Loaded);
        const QStringList copies = filesLike(story, QFileInfo(path).fileName() + u".unreadable-*");
        QCOMPARE(copies.size(), 1);
        QCOMPARE(contentOf(story.path(copies.first())), content);
        QVERIFY2(story.toast().contains(copies.first()), qPrintable(story.toast()));
        // Lost columns start the board over; where the tasks stood is in the backup.
        const QStringList backups = filesLike(story, u"*.sqlite.backup-*"_s);
        QCOMPARE(backups.size(), 1);
        QCOMPARE(RawDatabase(story.path(backups.first())).rows(placesSql), places);
        QStringList shown = story.shownIn(u"To Do"_s) + story.shownIn(u"Doing"_s);
        shown.sort();
        QCOMPARE(shown, (QStringList{u"a"_s, u"b"_s}));
        QCOMPARE(story.shownIn(u"Doing"_s).isEmpty(), isBoardFile);
    }

    void aStoreThatIsNoDatabaseIsKeptAsideAndNamed()
    {
        Story story;
        const QByteArray letter("Dear diary, this is not a database. ");
        writeFile(story.databasePath(), letter.repeated(200));

        story.start();

        const QStringList copies = filesLike(story, u"devTaskPositions.sqlite.damaged-*"_s);
        QCOMPARE(copies.size(), 1);
        QCOMPARE(contentOf(story.path(copies.first())), letter.repeated(200));
        QVERIFY2(story.toast().contains(copies.first()), qPrintable(story.toast()));
        story.createTask(u"a new beginning"_s);
        story.restart();
        QCOMPARE(story.shownIn(u"To Do"_s), QStringList{u"a new beginning"_s});
    }

    void theNoticeStaysUntilItIsDismissed()
    {
        Story story;
        writeFile(story.databasePath(), QByteArray(5000, 'x'));
        story.start();
        const QString notice = story.toast();
        QVERIFY(!notice.isEmpty());

        story->toasts.show(u"Moved"_s, ToastManager::ToastStyle::Info);
        QCOMPARE(story.toast(), u"Moved"_s);
        story.advance(60.0);
        QCOMPARE(story.toast(), notice);

        story->toasts.dismiss();
        story.advance(60.0);
        QCOMPARE(story.toast(), QString());
    }

    /** As when the home is a medium that was taken out: whatever the user does lives in memory only. */
    void aFolderThatCannotBeMadeIsSaidAndTheBoardStillStarts()
    {
        Story story;
        const QString file = story.directory.filePath(u"a file"_s);
        writeFile(file, "mine");
        story.config.directory = file + u"/Vantrel";

        story.start();

        QCOMPARE(story->board->loadingState(), BoardLoadingState::Loaded);
        QCOMPARE(story.columns(), (QStringList{u"To Do"_s, u"Doing"_s, u"Done"_s}));
        QVERIFY2(story.toast().contains(story.config.directory), qPrintable(story.toast()));
        story.createTasks({u"a"_s, u"b"_s});
        story.move(u"b"_s, u"Doing"_s);
        story.settle();
        story.advance(31.0);
        story.refresh();
        QCOMPARE(story.shownIn(u"To Do"_s), QStringList{u"a"_s});
        QCOMPARE(story.shownIn(u"Doing"_s), QStringList{u"b"_s});
        QVERIFY(story.desktop.announcements.announcements.front().priority == AnnouncementPriority::High);
        QCOMPARE(contentOf(file), QByteArray("mine"));
    }

    /** The disk is full while the user works, and is cleared later: nothing on the screen may be lost. */
    void aFullDiskIsSaidAndCaughtUpWith()
    {
        FaultyVfs disk;
        Story story;
        story.databaseVfs = disk.name();
        story.start();
        story.createTasks({u"a"_s, u"b"_s});

        disk.failAt(1, SQLITE_FULL, true);
        story.move(u"a"_s, u"Doing"_s);
        story.block(u"b"_s, u"no space"_s);
        QTRY_VERIFY(disk.hasFailed());
        QTRY_VERIFY2(story.toast().contains(u"devTaskPositions.sqlite"_s), qPrintable(story.toast()));
        QCOMPARE(story.shownIn(u"Doing"_s), QStringList{u"a"_s});

        TaskImportViewModel &importer = *story.viewModels().importer();
        importer.show();
        importer.setInputText(u"- [ ] c\n- [ ] d"_s);
        importer.parseInput();
        importer.importTasks();
        QTRY_VERIFY(importer.confirmation().contains(u"could not be saved yet"_s));
        QCOMPARE(importer.inputText(), u"- [ ] c\n- [ ] d"_s);
        QCOMPARE(story.shownIn(u"To Do"_s), (QStringList{u"c"_s, u"d"_s, u"b"_s}));

        disk.failAt(0);
        story.rename(u"b"_s, u"B"_s);
        story.settle();
        story.restart();

        QCOMPARE(story.shownIn(u"Doing"_s), QStringList{u"a"_s});
        QCOMPARE(story.shownIn(u"To Do"_s), (QStringList{u"c"_s, u"d"_s, u"B"_s}));
        QCOMPARE(story.task(u"B"_s)->blockReason(), u"no space"_s);
    }

    /** The user adds a column while the disk is full: it is on the screen, and no half of it on the disk. */
    void aFullDiskLeavesTheOldBoardFileWhole()
    {
        Story story;
        story.start();
        story.settle();
        const QByteArray before = contentOf(story.boardFilePath());

        story.files.failAt(1, ENOSPC, true);
        Column review = story->board->columnManager().columns().at(1);
        review.id = ColumnId::create();
        review.name = u"Review"_s;
        review.stableId.reset();
        story->board->addColumn(review);
        story.settle();

        QVERIFY(story.columns().contains(u"Review"_s));
        QCOMPARE(contentOf(story.boardFilePath()), before);
        QVERIFY2(story.toast().contains(QFileInfo(story.boardFilePath()).fileName()),
                 qPrintable(story.toast()));
        story.files.failAt(0);
        story.restart();
        QVERIFY(story.columns().contains(u"Review"_s));
    }

    void tablesOfALaterVersionAreLeftAlone()
    {
        Story story;
        story.start();
        story.createTask(u"a"_s);
        story.stop();
        const RawDatabase database(story.databasePath());
        QVERIFY(database.run(u"CREATE TABLE fromTheFuture (x); INSERT INTO fromTheFuture VALUES (42)"_s));

        story.start();
        story.move(u"a"_s, u"Doing"_s);
        story.settle();
        story.stop();

        QCOMPARE(database.rows(u"SELECT x FROM fromTheFuture"_s), QStringList{u"42"_s});
        QCOMPARE(database.integrity(), u"ok"_s);
    }
};

VANTREL_REGISTER_TEST(TestDamagedStorage)
#include "test_damaged_storage.moc"
