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
    void init() { m = std::make_unique<Setting>(); }

    void enabledManagersFollowTheStoredFlags_data()
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
        QTest::newRow("reminders alone")
            << u"false"_s << u"true"_s << u"false"_s << QStringList{u"Reminders"_s};
    }

    void enabledManagersFollowTheStoredFlags()
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

    void theSourceOfATaskIsFoundByItsIdAmongTheEnabledOnes_data()
    {
        QTest::addColumn<QString>("id");
        QTest::addColumn<bool>("isPlainTextEnabled");
        QTest::addColumn<QString>("source");

        QTest::newRow("plain text, though OmniFocus is asked first")
            << u"plaintext-1"_s << true << u"Plain Text"_s;
        QTest::newRow("plain text that is off") << u"plaintext-1"_s << false << QString();
        QTest::newRow("OmniFocus") << u"fUV9GFRTjhr"_s << true << u"OmniFocus"_s;
        QTest::newRow("reminders that are off") << u"reminder_1"_s << true << QString();
        QTest::newRow("prefix without hyphen") << u"plaintext1"_s << true << u"OmniFocus"_s;
        QTest::newRow("a sample task") << u"task-1"_s << true << QString();
    }

    void theSourceOfATaskIsFoundByItsIdAmongTheEnabledOnes()
    {
        QFETCH(QString, id);
        QFETCH(bool, isPlainTextEnabled);
        m->factory.setTaskSourceConfiguration({true, false, isPlainTextEnabled});

        const TaskManagerProtocol *manager = m->factory.enabledManagerFor(id);

        QTEST(manager ? manager->taskManagerName() : QString(), "source");
    }

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

VANTREL_REGISTER_TEST(TestTaskManagerFactory)

} // namespace vantrel::test

#include "test_task_manager_factory.moc"
