#pragma once

#include "feedback/SoundManager.h"

#include <QThread>

#include <memory>

namespace vantrel {

/**
 * Plays the sounds through Qt Multimedia, on a thread of its own: the first use of a media backend takes up
 * to a second, which must hold up neither the first frame nor a move. Where the desktop has no output device
 * no player is ever built. One instance; called on the GUI thread.
 */
class MultimediaSoundPlayer final : public SoundPlayer
{
public:
    /** Before QGuiApplication is not too early. */
    MultimediaSoundPlayer();
    ~MultimediaSoundPlayer() override;

    void prepare() override;
    void play(Sound sound) override;

private:
    class Players;

    void ensureThread();

    QThread m_thread;
    /** Lives, and is destroyed, on m_thread. */
    Players *m_players = nullptr;
};

} // namespace vantrel
