#include "foundations/DefaultsKeys.h"
#include "sources/TaskManagerFactory.h"
#include "support/FakeTaskManager.h"
#include "support/ManualClock.h"
#include "support/TestRegistry.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace vantrel::test {

class TestTaskManagerFactory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void enabledManagersFollowTheStoredFlags_data();
    void enabledManagersFollowTheStoredFlags();
    void aConfigurationIsReadBackAsItWasSet();
    void theSourceOfATaskIsFoundByItsIdAmongTheEnabledOnes_data();
    void theSourceOfATaskIsFoundByItsIdAmongTheEnabledOnes();
    void idsAreClaimedByTheirForm_data();
    void idsAreClaimedByTheirForm();
    void typesAreReadFromTheirExactNames();

private:
    struct Setting
    {
        QTemporaryDir directory;
        FileCalls calls;
        FileSaver saver{calls};
        UserDefaults defaults{saver, directory.filePath(u"defaults.json"_s)};
        ManualClock clock;
        FakeTaskManager omniFocus{TaskManagerType::OmniFocus, clock};
        FakeTaskManager reminders{TaskManagerType::Reminders, clock};
        FakeTaskManager plainText{TaskManagerType::PlainText, clock};
        TaskManagerFactory factory{defaults, omniFocus, reminders, plainText};
    };

    std::unique_ptr<Setting> m;
};

void TestTaskManagerFactory::init()
{
    m = std::make_unique<Setting>();
}

void TestTaskManagerFactory::enabledManagersFollowTheStoredFlags_data()
{
    // What is stored under each key: "true", "false", "text", or nothing.
    QTest::addColumn<QString>("omniFocus");
    QTest::addColumn<QString>("reminders");
    QTest::addColumn<QString>("plainText");
    QTest::addColumn<QStringList>("enabled");

    QTest::newRow("first run") << u""_s << u""_s << u""_s << QStringList{u"Plain Text"_s};
    QTest::newRow("all on") << u"true"_s << u"true"_s << u"true"_s
                            << QStringList{u"OmniFocus"_s, u"Reminders"_s, u"Plain Text"_s};
    QTest::newRow("all off gives OmniFocus")
        << u"false"_s << u"false"_s << u"false"_s << QStringList{u"OmniFocus"_s};
    QTest::newRow("texts count as unset")
        << u"text"_s << u"text"_s << u"text"_s << QStringList{u"Plain Text"_s};
    QTest::newRow("reminders alone") << u"false"_s << u"true"_s << u"false"_s << QStringList{u"Reminders"_s};
}

void TestTaskManagerFactory::enabledManagersFollowTheStoredFlags()
{
    QFETCH(QString, omniFocus);
    QFETCH(QString, reminders);
    QFETCH(QString, plainText);
    QFETCH(QStringList, enabled);
    const auto set = [this](QStringView key, const QString &value) {
        if (value == u"text") {
            m->defaults.set(key, u"true"_s);
        } else if (!value.isEmpty()) {
            m->defaults.set(key, value == u"true");
        }
    };
    set(keys::IsOmniFocusEnabled, omniFocus);
    set(keys::IsRemindersEnabled, reminders);
    set(keys::IsPlainTextEnabled, plainText);

    QStringList names;
    for (const TaskManagerProtocol *manager : m->factory.enabledManagers()) {
        names.append(manager->taskManagerName());
    }
    QCOMPARE(names, enabled);
}

void TestTaskManagerFactory::aConfigurationIsReadBackAsItWasSet()
{
    const TaskSourceConfiguration configuration{true, false, false};
    m->factory.setTaskSourceConfiguration(configuration);

    QVERIFY(m->factory.getTaskSourceConfiguration() == configuration);
    QCOMPARE(&m->factory.manager(TaskManagerType::PlainText), &m->plainText);
}

void TestTaskManagerFactory::theSourceOfATaskIsFoundByItsIdAmongTheEnabledOnes_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<bool>("isPlainTextEnabled");
    QTest::addColumn<QString>("source");

    QTest::newRow("plain text, though OmniFocus is asked first")
        << u"plaintext-1"_s << true << u"Plain Text"_s;
    QTest::newRow("plain text that is off") << u"plaintext-1"_s << false << QString();
    QTest::newRow("OmniFocus") << u"fUV9GFRTjhr"_s << true << u"OmniFocus"_s;
    QTest::newRow("reminders that are off") << u"reminder_1"_s << true << QString();
    QTest::newRow("a sample task") << u"task-1"_s << true << QString();
}

void TestTaskManagerFactory::theSourceOfATaskIsFoundByItsIdAmongTheEnabledOnes()
{
    QFETCH(QString, id);
    QFETCH(bool, isPlainTextEnabled);
    m->factory.setTaskSourceConfiguration({true, false, isPlainTextEnabled});

    const TaskManagerProtocol *manager = m->factory.enabledManagerFor(id);

    QTEST(manager ? manager->taskManagerName() : QString(), "source");
}

void TestTaskManagerFactory::idsAreClaimedByTheirForm_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QStringList>("claimants");

    QTest::newRow("plain text") << u"plaintext-1"_s << QStringList{u"OmniFocus"_s, u"Plain Text"_s};
    QTest::newRow("reminder") << u"reminder_1"_s << QStringList{u"Reminders"_s};
    QTest::newRow("sample") << u"task-1"_s << QStringList();
    QTest::newRow("bare") << u"fUV9GFRTjhr"_s << QStringList{u"OmniFocus"_s};
    QTest::newRow("prefix without hyphen") << u"plaintext1"_s << QStringList{u"OmniFocus"_s};
}

void TestTaskManagerFactory::idsAreClaimedByTheirForm()
{
    QFETCH(QString, id);
    QStringList claimants;
    for (const TaskManagerType type : AllTaskManagerTypes) {
        if (hasIdFormOf(type, id)) {
            claimants.append(rawValue(type));
        }
    }
    QTEST(claimants, "claimants");
}

void TestTaskManagerFactory::typesAreReadFromTheirExactNames()
{
    for (const TaskManagerType type : AllTaskManagerTypes) {
        QVERIFY(taskManagerTypeFromRawValue(rawValue(type)) == type);
    }
    QVERIFY(!taskManagerTypeFromRawValue(u"plain text"));
}

VANTREL_REGISTER_TEST(TestTaskManagerFactory)

} // namespace vantrel::test

#include "test_task_manager_factory.moc"
