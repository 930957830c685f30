#include "platform/qt/SoundPlayers.h"

namespace vantrel {

namespace {

class SilentSoundPlayer final : public SoundPlayer
{
public:
    void play(Sound) override {}
};

} // namespace

std::unique_ptr<SoundPlayer> makeSoundPlayer()
{
    return std::make_unique<SilentSoundPlayer>();
}

} // namespace vantrel
