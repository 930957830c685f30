#include "platform/qt/QtClipboard.h"
#include "platform/qt/SoundPlayers.h"
#include "support/FakeDesktop.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTest>

using namespace vantrel;

/** What the ports promise, whoever implements them. */
class TestDesktopPorts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aClipboardGivesBackWhatItTook_data()
    {
        QTest::addColumn<bool>("isReal");
        QTest::addColumn<QString>("text");
        for (const bool isReal : {false, true}) {
            const char *kind = isReal ? "Qt's" : "fake";
            QTest::addRow("%s, one line", kind) << isReal << QStringLiteral("- [ ] Water the plants");
            QTest::addRow("%s, lines and emoji", kind) << isReal << QStringLiteral("- [x] Füße\n- [ ] 🔥\n");
            QTest::addRow("%s, nothing", kind) << isReal << QString();
        }
    }

    void aClipboardGivesBackWhatItTook()
    {
        QFETCH(const bool, isReal);
        QFETCH(const QString, text);
        QtClipboard real;
        test::FakeClipboard fake;
        Clipboard &clipboard = isReal ? static_cast<Clipboard &>(real) : fake;
        clipboard.setText(QStringLiteral("something earlier"));

        QVERIFY(clipboard.setText(text));

        QCOMPARE(clipboard.text(), text);
    }

    void everySoundHasItsFile()
    {
        for (const Sound sound :
             {Sound::ColumnMove, Sound::SwimLaneMove, Sound::Completion, Sound::TaskFocus}) {
            QFile file(u":/sounds/" + soundFileName(sound) + u".mp3");
            QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.fileName()));
            QVERIFY2(file.size() > 500 && file.size() < 10000, "a short sound is a few kilobytes");
        }
    }

    /** Build machines have no audio device, and a sound there has once ended the whole program. */
    void soundsNeverHoldUpTheCaller()
    {
        QElapsedTimer held;
        qint64 longest = 0;
        {
            const std::unique_ptr<SoundPlayer> player = makeSoundPlayer();
            held.start();
            player->prepare();
            for (int i = 0; i < 4; ++i) {
                player->play(static_cast<Sound>(i));
            }
            longest = held.elapsed();
            QTest::qWait(200);
        }
        QVERIFY2(longest < 100, qPrintable(QString::number(longest)));
    }
};

QTEST_MAIN(TestDesktopPorts)
#include "test_desktop_ports.moc"
