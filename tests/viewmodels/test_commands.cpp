#include "foundations/DefaultsKeys.h"
#include "foundations/NotificationNames.h"
#include "support/TestRegistry.h"
#include "viewmodels/Commands.h"

#include <QKeySequence>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

/** Taken by common desktops or input methods before the program sees them. */
bool isTakenByDesktops(const QString &sequence)
{
    static const QStringList taken{u"Ctrl+Alt+L"_s,    u"Ctrl+Alt+F"_s,    u"Ctrl+Alt+T"_s,
                                   u"Ctrl+Alt+D"_s,    u"Ctrl+Alt+Del"_s,  u"Ctrl+Alt+Up"_s,
                                   u"Ctrl+Alt+Down"_s, u"Ctrl+Alt+Left"_s, u"Ctrl+Alt+Right"_s,
                                   u"Ctrl+Shift+U"_s,  u"Ctrl+Esc"_s};
    return taken.contains(sequence) || sequence.startsWith(u"Alt+F") || sequence.contains(u"Meta");
}

} // namespace

/** The table of commands, and what a command does. */
class TestCommands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        const QString path = m_folder.filePath(QUuid::createUuid().toString(QUuid::WithoutBraces));
        m_commands.reset();
        m_defaults = std::make_unique<UserDefaults>(m_saver, path);
        m_commands = std::make_unique<Commands>(m_notifications, *m_defaults, DesktopFamily::Linux);
    }

    void noKeyMeansTwoThingsInOneModeNorBelongsToTheDesktop()
    {
        for (const DesktopFamily desktop : {DesktopFamily::Linux, DesktopFamily::Mac}) {
            Commands commands(m_notifications, *m_defaults, desktop);
            for (const ViewModeInfo &mode : AllViewModes) {
                commands.setViewMode(mode.mode);
                QHash<QKeySequence, QString> meanings;
                for (const QVariant &entry : commands.all()) {
                    const auto *command = entry.value<Command *>();
                    for (const QVariant &text : command->sequences()) {
                        const QKeySequence keys(text.toString(), QKeySequence::PortableText);
                        const QString sequence = keys.toString(QKeySequence::PortableText);
                        QVERIFY2(keys.count() == 1 && keys[0].key() != Qt::Key_unknown, qPrintable(sequence));
                        QVERIFY2(desktop == DesktopFamily::Mac || !isTakenByDesktops(sequence),
                                 qPrintable(sequence));
                        if (command->isEnabled()) {
                            QVERIFY2(!meanings.contains(keys),
                                     qPrintable(meanings.value(keys) + u" and " + command->commandId()));
                            meanings.insert(keys, command->commandId());
                        }
                    }
                }
                QVERIFY(!meanings.isEmpty());
            }
        }
    }

    void aCommandPostsItsNotification()
    {
        QVariant object;
        int posts = 0;
        QObject owner;
        const auto note = [&](const Notification &notification) {
            object = notification.object;
            ++posts;
        };
        m_notifications.observe(notifications::ToggleSwimLaneExpansionRequested, &owner, note);
        m_notifications.observe(notifications::RefreshTasksRequested, &owner, note);

        command(u"toggleSwimLane5"_s).trigger();
        QCOMPARE(object, QVariant(4));
        command(u"refresh"_s).trigger();
        QVERIFY(!object.isValid());
        QCOMPARE(posts, 2);
    }

    void theWindowsOwnCommandsAreAskedOfTheWindow()
    {
        QSignalSpy window(m_commands.get(), &Commands::windowCommandRequested);
        QSignalSpy quit(m_commands.get(), &Commands::quitRequested);

        command(u"nextPane"_s).trigger();
        command(u"quit"_s).trigger();

        QCOMPARE(window.count(), 1);
        QCOMPARE(window.first().first().toString(), u"nextPane"_s);
        QCOMPARE(quit.count(), 1);
    }

    void theProjectDisplayIsFlippedBeforeItIsTold()
    {
        QList<bool> told;
        QObject owner;
        m_notifications.observe(notifications::ProjectDisplayToggled, &owner, [&](const Notification &) {
            told.append(m_defaults->boolean(keys::ShowProjectInfo).value_or(true));
        });

        command(u"toggleProjectDisplay"_s).trigger();
        command(u"toggleProjectDisplay"_s).trigger();

        QCOMPARE(told, (QList<bool>{false, true}));
    }

    void aPreferenceSwitchesItsCommandOff()
    {
        Command &done = command(u"moveToDone"_s);
        QSignalSpy changes(&done, &Command::enabledChanged);
        int posts = 0;
        QObject owner;
        m_notifications.observe(notifications::CmdShiftEnterToCompleteRequested, &owner,
                                [&](const Notification &) { ++posts; });

        m_defaults->set(keys::EnableCmdShiftEnterToComplete, false);
        done.trigger();
        QVERIFY(!done.isEnabled());
        QVERIFY(command(u"moveToNextColumnBySpace"_s).isEnabled());
        QCOMPARE(posts, 0);

        m_defaults->set(keys::EnableCmdShiftEnterToComplete, true);
        done.trigger();
        QCOMPARE(posts, 1);
        QCOMPARE(changes.count(), 2);
    }

    void boardCommandsRestInOtherModes()
    {
        m_commands->setViewMode(ViewMode::Analyze);
        QVERIFY(!command(u"moveUp"_s).isEnabled());
        QVERIFY(command(u"quickAdd"_s).isEnabled());
        m_commands->setViewMode(ViewMode::Visualize);
        QVERIFY(command(u"moveUp"_s).isEnabled());
    }

    void theMenusHoldEveryCommandOnce()
    {
        QSet<QString> shown;
        for (const QVariant &menu : m_commands->menus()) {
            QVERIFY(!menu.toMap().value(u"title"_s).toString().isEmpty());
            for (const QVariant &entry : menu.toMap().value(u"commands"_s).toList()) {
                const auto *command = entry.value<Command *>();
                QVERIFY2(!shown.contains(command->commandId()), qPrintable(command->commandId()));
                QVERIFY(!command->title().isEmpty());
                shown.insert(command->commandId());
            }
        }
        QVERIFY(shown.remove(u"moveToDone"_s));
        QCOMPARE(shown.size() + 1, m_commands->all().size() - 1);
        QVERIFY(!shown.contains(u"menu"_s));
        QCOMPARE(command(u"moveToDone"_s).title(), u"Move Task to Done Column"_s);
        QCOMPARE(command(u"moveToDone"_s).keys(), u"Ctrl+Shift+Return"_s);
    }

private:
    Command &command(const QString &id) { return *m_commands->command(id); }

    QTemporaryDir m_folder;
    FileCalls m_calls;
    FileSaver m_saver{m_calls};
    NotificationCenter m_notifications;
    std::unique_ptr<UserDefaults> m_defaults;
    std::unique_ptr<Commands> m_commands;
};

VANTREL_REGISTER_TEST(TestCommands)

} // namespace vantrel::test

#include "test_commands.moc"
