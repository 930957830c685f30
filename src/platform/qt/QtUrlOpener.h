#pragma once

#include "feedback/DesktopPorts.h"

namespace vantrel {

/** Opens links with the desktop's own choice of program. GUI thread. */
class QtUrlOpener final : public UrlOpener
{
public:
    bool open(const QUrl &url) override;
};

} // namespace vantrel
