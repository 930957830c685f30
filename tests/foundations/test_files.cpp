#include "foundations/FileSaver.h"
#include "foundations/Log.h"
#include "foundations/UserDefaults.h"
#include "support/FailingFileCalls.h"
#include "support/TestFiles.h"
#include "support/TestRegistry.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

namespace vantrel::test {

using namespace Qt::StringLiterals;

/** Files that are saved whole or not at all, and the preferences that live in one. */
class TestFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_directory = std::make_unique<QTemporaryDir>();
        m_calls = std::make_unique<FailingFileCalls>();
        m_saver = std::make_unique<FileSaver>(*m_calls);
    }

    void savesWholeOrNotAtAll()
    {
        const QByteArray old("old");
        const QByteArray fresh(10'000, 'n');
        int failures = 0;
        for (int n = 1;; ++n) {
            QVERIFY(m_saver->save(path(), old).isOk());
            m_calls->limitWrites(3000);
            m_calls->failAt(n, ENOSPC);
            const FileOutcome outcome = m_saver->save(path(), fresh);
            const bool hasFailed = m_calls->hasFailed();
            m_calls->failAt(0);

            const QByteArray content = contentOf(path());
            QVERIFY(content == old || content == fresh);
            QVERIFY(content == fresh || !outcome.isOk());
            QCOMPARE(QDir(m_directory->path()).entryList(QDir::Files), QStringList{u"file.json"_s});
            if (!outcome.isOk()) {
                QVERIFY2(outcome.error.contains(path()) && outcome.error.contains(u"No space left"_s),
                         qPrintable(outcome.error));
            }
            if (!hasFailed) {
                break;
            }
            ++failures;
        }
        // Open, four writes, fsync, close, rename, and the folder's open, fsync and close.
        QCOMPARE(failures, 11);
        struct stat status = {};
        QCOMPARE(::stat(QFile::encodeName(path()).constData(), &status), 0);
        QCOMPARE(status.st_mode & 0777, 0600u);
    }

    void goesOnAfterShortAndInterruptedWrites()
    {
        m_calls->limitWrites(1);
        m_calls->failAt(3, EINTR);
        QVERIFY(m_saver->save(path(), "content").isOk());
        QVERIFY(m_calls->hasFailed());
        QCOMPARE(contentOf(path()), QByteArray("content"));
    }

    void keepsCopiesWithoutReplacingOne()
    {
        writeFile(path(), "one");
        const FileOutcome first = m_saver->keepAside(path());
        writeFile(path(), "two");
        const FileOutcome second = m_saver->keepAside(path());
        QVERIFY(first.isOk() && second.isOk() && first.path != second.path);
        QVERIFY(first.path.startsWith(path() + u".unreadable-"));
        QCOMPARE(contentOf(first.path), QByteArray("one"));
        QCOMPARE(contentOf(second.path), QByteArray("two"));
        QCOMPARE(contentOf(path()), QByteArray("two"));
        QVERIFY(!m_saver->keepAside(m_directory->filePath(u"missing"_s)).isOk());
    }

    void keepsEachTypeOfValue()
    {
        const auto readableAs = [](const UserDefaults &defaults, const QString &key) {
            QStringList types;
            if (defaults.boolean(key)) types.append(u"boolean"_s);
            if (defaults.integer(key)) types.append(u"integer"_s);
            if (defaults.real(key)) types.append(u"real"_s);
            if (defaults.text(key)) types.append(u"text"_s);
            if (defaults.data(key)) types.append(u"data"_s);
            return types.join(u' ');
        };
        const QByteArray data("\0\xFF{", 3);
        UserDefaults written(*m_saver, path());
        written.set(u"true", true);
        written.set(u"truth as text", u"true"_s);
        written.set(u"number as text", u"5"_s);
        written.set(u"empty text", u""_s);
        written.set(u"0", 0);
        written.set(u"3.0", 3.0);
        written.set(u"0.1", 0.1);
        written.set(u"beyond integers", 1e300);
        written.set(u"data", data);
        written.set(u"removed", true);
        written.remove(u"removed");
        written.waitUntilSaved();

        const UserDefaults read(*m_saver, path());
        for (const auto &[key, types] : {std::pair(u"true"_s, u"boolean"_s),
                                         {u"truth as text"_s, u"text"_s},
                                         {u"number as text"_s, u"text"_s},
                                         {u"empty text"_s, u"text"_s},
                                         {u"0"_s, u"integer real"_s},
                                         {u"3.0"_s, u"integer real"_s},
                                         {u"0.1"_s, u"real"_s},
                                         {u"beyond integers"_s, u"real"_s},
                                         {u"data"_s, u"data"_s},
                                         {u"removed"_s, u""_s}}) {
            QCOMPARE(key + u": " + readableAs(read, key), key + u": " + types);
        }
        QVERIFY(read.boolean(u"true") == true && read.integer(u"0") == 0);
        QVERIFY(read.real(u"0.1") == 0.1 && read.real(u"beyond integers") == 1e300);
        QCOMPARE(read.text(u"number as text"), u"5"_s);
        QCOMPARE(read.data(u"data"), data);
    }

    void tellsOfChangesOnly()
    {
        UserDefaults defaults(*m_saver, path());
        QSignalSpy changes(&defaults, &UserDefaults::valueChanged);
        defaults.set(u"a", false);
        defaults.set(u"a", false);
        defaults.set(u"a", 0);
        defaults.remove(u"b");
        defaults.remove(u"a");
        QCOMPARE(changes.size(), 3);
    }

    void keepsUnreadablePreferencesAside()
    {
        for (const QByteArray &content : {QByteArray("{\"a\": 1, "), QByteArray(""), QByteArray("[1]")}) {
            init();
            writeFile(path(), content);
            UserDefaults defaults(*m_saver, path());
            QVERIFY(!defaults.problem().isEmpty());
            defaults.set(u"a", 2);
            defaults.waitUntilSaved();

            const QStringList kept = QDir(m_directory->path()).entryList({u"*.unreadable-*"_s});
            QCOMPARE(kept.size(), 1);
            QCOMPARE(contentOf(m_directory->filePath(kept.front())), content);
            QVERIFY(defaults.problem().contains(kept.front()));
            QCOMPARE(UserDefaults(*m_saver, path()).integer(u"a"), std::optional<qint64>(2));
        }
    }

    void leavesAloneWhatCannotBeKeptAside()
    {
        writeFile(path(), "broken");
        m_calls->failAt(1, ENOSPC, true);
        UserDefaults defaults(*m_saver, path());
        m_calls->failAt(0);
        defaults.set(u"a", 2);
        defaults.waitUntilSaved();
        QCOMPARE(defaults.integer(u"a"), std::optional<qint64>(2));
        QCOMPARE(contentOf(path()), QByteArray("broken"));
    }

    void tellsThatAPreferenceIsNotSaved()
    {
        {
            UserDefaults defaults(*m_saver, path());
            QSignalSpy problems(&defaults, &UserDefaults::problemFound);
            m_calls->failAt(1, EACCES, true);
            defaults.set(u"a", 2);
            defaults.waitUntilSaved();
            m_calls->failAt(0);
            QCoreApplication::sendPostedEvents(&defaults);
            QCOMPARE(problems.size(), 1);
            QVERIFY(problems.front().front().toString().contains(path()));
            // The end of the program waits for what is still to be written.
            defaults.set(u"b", 3);
        }
        QCOMPARE(UserDefaults(*m_saver, path()).integer(u"a"), std::optional<qint64>(2));
        QCOMPARE(UserDefaults(*m_saver, path()).integer(u"b"), std::optional<qint64>(3));
    }

    void takesTheStoredThreshold()
    {
        UserDefaults defaults(*m_saver, path());
        const LogManager keeper(defaults);
        for (const auto &[stored, level] : {std::pair(4.0, 4), {0.0, 0}, {7.0, 2}, {-1.0, 2}, {3.5, 2}}) {
            defaults.set(u"vantrel.minimumLogLevel", stored);
            QCOMPARE(static_cast<int>(LogManager(defaults).minimumLogLevel()), level);
            QCOMPARE(log::isDebugEnabled(), level == 4);
        }
        LogManager manager(defaults);
        manager.setMinimumLogLevel(LogLevel::Info);
        QCOMPARE(LogManager(defaults).minimumLogLevel(), LogLevel::Info);

        const LogWriter writer(LogWriter::Output::Silent);
        log::debug(u"debug"_s);
        log::info(u"info"_s);
        manager.setMinimumLogLevel(LogLevel::Fault);
        log::warning(u"warning"_s);
        log::error(u"error"_s);
        manager.setMinimumLogLevel(LogLevel::Notice);
        QCOMPARE(LogWriter::recentMessages(), (QStringList{u"info"_s, u"error"_s}));
    }

private:
    QString path() const { return m_directory->filePath(u"file.json"_s); }

    std::unique_ptr<QTemporaryDir> m_directory;
    std::unique_ptr<FailingFileCalls> m_calls;
    std::unique_ptr<FileSaver> m_saver;
};

VANTREL_REGISTER_TEST(TestFiles)

} // namespace vantrel::test

#include "test_files.moc"
