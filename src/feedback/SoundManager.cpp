#include "feedback/SoundManager.h"

#include "foundations/DefaultsKeys.h"

#include <array>

namespace vantrel {

namespace {
constexpr double RepeatWindowSeconds = 0.08;
constexpr std::array<QStringView, 4> SoundFileNames{u"column-move", u"swimlane-move", u"completion",
                                                    u"whoosh"};
} // namespace

QString soundFileName(Sound sound)
{
    return SoundFileNames.at(static_cast<std::size_t>(sound)).toString();
}

SoundManager::SoundManager(SoundPlayer &player, Announcer &announcer, UserDefaults &defaults, Clock &clock)
    : m_player(player), m_announcer(announcer), m_defaults(defaults), m_clock(clock)
{
}

void SoundManager::prepare()
{
    if (m_defaults.boolean(keys::SoundsEnabled).value_or(true)) {
        m_player.prepare();
    }
}

void SoundManager::playSound(Sound sound, const std::optional<QString> &announcement)
{
    const Date now = m_clock.now();
    const double sinceLast = now - m_lastPlayed;
    const bool isRepeat = m_lastSound == sound && sinceLast >= 0.0 && sinceLast < RepeatWindowSeconds;
    if (!isRepeat && areSoundsEnabled()) {
        m_player.play(sound);
        m_lastSound = sound;
        m_lastPlayed = now;
    }
    if (announcement) {
        m_announcer.announce(*announcement);
    }
}

bool SoundManager::areSoundsEnabled()
{
    const std::optional<bool> stored = m_defaults.boolean(keys::SoundsEnabled);
    if (!stored) {
        m_defaults.set(keys::SoundsEnabled, true);
    }
    return stored.value_or(true);
}

} // namespace vantrel
