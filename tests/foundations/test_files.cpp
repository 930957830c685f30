#include "foundations/FileSaver.h"
#include "foundations/Log.h"
#include "foundations/UserDefaults.h"
#include "support/FailingFileCalls.h"
#include "support/TestRegistry.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

namespace vantrel::test {

using namespace Qt::StringLiterals;

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("absent");
}

void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
}

} // namespace

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

    void savesWholeOrNotAtAll();
    void goesOnAfterShortAndInterruptedWrites();
    void keepsCopiesWithoutReplacingOne();
    void keepsEachTypeOfValue_data();
    void keepsEachTypeOfValue();
    void tellsOfChangesOnly();
    void keepsUnreadablePreferencesAside_data();
    void keepsUnreadablePreferencesAside();
    void leavesAloneWhatCannotBeKeptAside();
    void tellsThatAPreferenceIsNotSaved();
    void takesTheStoredThreshold_data();
    void takesTheStoredThreshold();

private:
    QString path() const { return m_directory->filePath(u"file.json"_s); }

    std::unique_ptr<QTemporaryDir> m_directory;
    std::unique_ptr<FailingFileCalls> m_calls;
    std::unique_ptr<FileSaver> m_saver;
};

void TestFiles::savesWholeOrNotAtAll()
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

void TestFiles::goesOnAfterShortAndInterruptedWrites()
{
    m_calls->limitWrites(1);
    m_calls->failAt(3, EINTR);
    QVERIFY(m_saver->save(path(), "content").isOk());
    QVERIFY(m_calls->hasFailed());
    QCOMPARE(contentOf(path()), QByteArray("content"));
}

void TestFiles::keepsCopiesWithoutReplacingOne()
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

void TestFiles::keepsEachTypeOfValue_data()
{
    QTest::addColumn<std::function<void(UserDefaults &)>>("write");
    QTest::addColumn<QString>("readable");
    const auto row = [](const char *name, std::function<void(UserDefaults &)> write,
                        const QString &readable) {
        QTest::newRow(name) << std::move(write) << readable;
    };
    row(
        "true", [](UserDefaults &d) { d.set(u"k", true); }, u"boolean"_s);
    row(
        "a text that looks like a boolean", [](UserDefaults &d) { d.set(u"k", u"true"_s); }, u"text"_s);
    row(
        "a text that looks like a number", [](UserDefaults &d) { d.set(u"k", u"5"_s); }, u"text"_s);
    row(
        "empty text", [](UserDefaults &d) { d.set(u"k", u""_s); }, u"text"_s);
    row(
        "0", [](UserDefaults &d) { d.set(u"k", 0); }, u"integer real"_s);
    row(
        "a real without fraction", [](UserDefaults &d) { d.set(u"k", 3.0); }, u"integer real"_s);
    row(
        "a real", [](UserDefaults &d) { d.set(u"k", 0.1); }, u"real"_s);
    row(
        "a real beyond integers", [](UserDefaults &d) { d.set(u"k", 1e300); }, u"real"_s);
    row(
        "data", [](UserDefaults &d) { d.set(u"k", QByteArray("\0\xFF{", 3)); }, u"data"_s);
    row(
        "removed", [](UserDefaults &d) { d.set(u"k", 1), d.remove(u"k"); }, u""_s);
}

void TestFiles::keepsEachTypeOfValue()
{
    QFETCH(std::function<void(UserDefaults &)>, write);
    UserDefaults written(*m_saver, path());
    write(written);
    const UserDefaults read(*m_saver, path());

    QStringList readable;
    if (read.boolean(u"k")) readable.append(u"boolean"_s);
    if (read.integer(u"k")) readable.append(u"integer"_s);
    if (read.real(u"k")) readable.append(u"real"_s);
    if (read.text(u"k")) readable.append(u"text"_s);
    if (read.data(u"k")) readable.append(u"data"_s);
    QTEST(readable.join(u' '), "readable");
    QCOMPARE(read.boolean(u"k"), written.boolean(u"k"));
    QCOMPARE(read.integer(u"k"), written.integer(u"k"));
    QCOMPARE(read.real(u"k"), written.real(u"k"));
    QCOMPARE(read.text(u"k"), written.text(u"k"));
    QCOMPARE(read.data(u"k"), written.data(u"k"));
}

void TestFiles::tellsOfChangesOnly()
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

void TestFiles::keepsUnreadablePreferencesAside_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("cut off") << QByteArray("{\"a\": 1, ");
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("an array") << QByteArray("[1]");
}

void TestFiles::keepsUnreadablePreferencesAside()
{
    QFETCH(QByteArray, content);
    writeFile(path(), content);
    UserDefaults defaults(*m_saver, path());
    QVERIFY(!defaults.problem().isEmpty());
    defaults.set(u"a", 2);

    const QStringList kept = QDir(m_directory->path()).entryList({u"*.unreadable-*"_s});
    QCOMPARE(kept.size(), 1);
    QCOMPARE(contentOf(m_directory->filePath(kept.front())), content);
    QVERIFY(defaults.problem().contains(kept.front()));
    QCOMPARE(UserDefaults(*m_saver, path()).integer(u"a"), std::optional<qint64>(2));
}

void TestFiles::leavesAloneWhatCannotBeKeptAside()
{
    writeFile(path(), "broken");
    m_calls->failAt(1, ENOSPC, true);
    UserDefaults defaults(*m_saver, path());
    m_calls->failAt(0);
    defaults.set(u"a", 2);
    QCOMPARE(defaults.integer(u"a"), std::optional<qint64>(2));
    QCOMPARE(contentOf(path()), QByteArray("broken"));
}

void TestFiles::tellsThatAPreferenceIsNotSaved()
{
    UserDefaults defaults(*m_saver, path());
    QSignalSpy problems(&defaults, &UserDefaults::problemFound);
    m_calls->failAt(1, EACCES, true);
    defaults.set(u"a", 2);
    QCOMPARE(problems.size(), 1);
    QVERIFY(problems.front().front().toString().contains(path()));
    m_calls->failAt(0);
    defaults.set(u"b", 3);
    QCOMPARE(UserDefaults(*m_saver, path()).integer(u"a"), std::optional<qint64>(2));
}

void TestFiles::takesTheStoredThreshold_data()
{
    QTest::addColumn<double>("stored");
    QTest::addColumn<int>("level");
    QTest::newRow("debug") << 4.0 << 4;
    QTest::newRow("fault") << 0.0 << 0;
    QTest::newRow("beyond the levels") << 7.0 << 2;
    QTest::newRow("negative") << -1.0 << 2;
    QTest::newRow("a fraction") << 3.5 << 2;
}

void TestFiles::takesTheStoredThreshold()
{
    QFETCH(double, stored);
    QFETCH(int, level);
    UserDefaults defaults(*m_saver, path());
    const LogManager keeper(defaults);
    defaults.set(u"vantrel.minimumLogLevel", stored);
    LogManager manager(defaults);
    QCOMPARE(static_cast<int>(manager.minimumLogLevel()), level);
    QCOMPARE(log::isDebugEnabled(), level == 4);
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

VANTREL_REGISTER_TEST(TestFiles)

} // namespace vantrel::test

#include "test_files.moc"
