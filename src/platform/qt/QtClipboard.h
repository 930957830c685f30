#pragma once

#include "feedback/DesktopPorts.h"

namespace vantrel {

/** The clipboard through Qt. On X11 a text set here lives as long as the program. GUI thread. */
class QtClipboard final : public Clipboard
{
public:
    bool setText(const QString &text) override;
    QString text() const override;
};

} // namespace vantrel
