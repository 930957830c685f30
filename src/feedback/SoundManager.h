#pragma once

#include "feedback/Announcer.h"
#include "foundations/UserDefaults.h"

#include <optional>

namespace vantrel {

/** The four sounds; the values are the indexes of their kinds. */
enum class Sound { ColumnMove = 0, SwimLaneMove = 1, Completion = 2, TaskFocus = 3 };

/** The file name of a sound without its type: "column-move", "swimlane-move", "completion", "whoosh". */
QString soundFileName(Sound sound);

/** Plays a sound, or nothing where there is no device or no file. A port; never blocks. */
class SoundPlayer
{
public:
    SoundPlayer() = default;
    virtual ~SoundPlayer() = default;
    Q_DISABLE_COPY_MOVE(SoundPlayer)

    /** Gets ready, so that the first sound has no delay. */
    virtual void prepare() {}
    virtual void play(Sound sound) = 0;
};

/** Plays the sounds of the user's actions, and speaks what goes with them. GUI thread; owned by Services. */
class SoundManager
{
public:
    SoundManager(SoundPlayer &player, Announcer &announcer, UserDefaults &defaults, Clock &clock);
    Q_DISABLE_COPY_MOVE(SoundManager)

    /** Gets the player ready if the user wants sounds; for the quiet moment after the first frame. */
    void prepare();

    /**
     * Plays `sound` if the user wants sounds, then announces the text, whether or not the sound played. A
     * repeat of the same sound within 80 ms is dropped: one action may reach here by two roads.
     */
    void playSound(Sound sound, const std::optional<QString> &announcement = {});

private:
    bool areSoundsEnabled();

    SoundPlayer &m_player;
    Announcer &m_announcer;
    UserDefaults &m_defaults;
    Clock &m_clock;
    std::optional<Sound> m_lastSound;
    Date m_lastPlayed;
};

} // namespace vantrel
