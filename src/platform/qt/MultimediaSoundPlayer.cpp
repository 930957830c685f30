#include "platform/qt/MultimediaSoundPlayer.h"

#include "foundations/Log.h"
#include "platform/qt/SoundPlayers.h"

#include <QAudioDevice>
#include <QAudioOutput>
#include <QFile>
#include <QMediaDevices>
#include <QMediaPlayer>

#include <array>

namespace vantrel {

/** The four players. They are built at the first need at which there is an output device. */
class MultimediaSoundPlayer::Players : public QObject
{
public:
    void prepare()
    {
        if (!m_arePrepared && !QMediaDevices::audioOutputs().isEmpty()) {
            m_arePrepared = true;
            for (std::size_t i = 0; i < m_players.size(); ++i) {
                m_players.at(i) = createAudioPlayer(soundFileName(static_cast<Sound>(i)));
            }
        }
    }

    void play(Sound sound)
    {
        prepare();
        QMediaPlayer *player = m_players.at(static_cast<std::size_t>(sound));
        // A device that has gone since is asked for again each time: playing without one only makes noise
        // in the log.
        if (player && !QMediaDevices::audioOutputs().isEmpty()) {
            player->setPosition(0);
            player->play();
        }
    }

private:
    /** nullptr, with a line in the log, where the sound is missing. */
    QMediaPlayer *createAudioPlayer(const QString &name)
    {
        const QString path = u":/sounds/" + name + u".mp3";
        if (!QFile::exists(path)) {
            log::warning(u"Failed to find sound file: " + name);
            return nullptr;
        }
        auto *player = new QMediaPlayer(this);
        connect(player, &QMediaPlayer::errorOccurred, this,
                [name](QMediaPlayer::Error, const QString &error) {
                    log::warning(u"Failed to create audio player for " + name + u": " + error);
                });
        player->setAudioOutput(new QAudioOutput(player));
        player->setSource(QUrl(u"qrc" + path));
        return player;
    }

    bool m_arePrepared = false;
    std::array<QMediaPlayer *, 4> m_players{};
};

MultimediaSoundPlayer::MultimediaSoundPlayer()
{
    // Qt's other backend crashes where there is no output device.
    if (!qEnvironmentVariableIsSet("QT_MEDIA_BACKEND")) {
        qputenv("QT_MEDIA_BACKEND", "gstreamer");
    }
    m_thread.setObjectName(QStringLiteral("sounds"));
}

MultimediaSoundPlayer::~MultimediaSoundPlayer()
{
    m_thread.quit();
    m_thread.wait();
}

void MultimediaSoundPlayer::prepare()
{
    ensureThread();
    QMetaObject::invokeMethod(
        m_players, [players = m_players] { players->prepare(); }, Qt::QueuedConnection);
}

void MultimediaSoundPlayer::play(Sound sound)
{
    ensureThread();
    QMetaObject::invokeMethod(
        m_players, [players = m_players, sound] { players->play(sound); }, Qt::QueuedConnection);
}

void MultimediaSoundPlayer::ensureThread()
{
    if (m_players) {
        return;
    }
    m_players = new Players;
    m_players->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, m_players, &QObject::deleteLater);
    m_thread.start(QThread::LowPriority);
}

std::unique_ptr<SoundPlayer> makeSoundPlayer()
{
    return std::make_unique<MultimediaSoundPlayer>();
}

} // namespace vantrel
