#pragma once

#include "feedback/SoundManager.h"

#include <memory>

namespace vantrel {

/** The player that this build has: a silent one where Qt Multimedia was missing or not wanted. */
std::unique_ptr<SoundPlayer> makeSoundPlayer();

} // namespace vantrel
