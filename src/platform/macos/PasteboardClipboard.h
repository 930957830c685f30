#pragma once

#include "feedback/DesktopPorts.h"

namespace vantrel {

/** The general pasteboard. GUI thread. */
class PasteboardClipboard final : public Clipboard
{
public:
    bool setText(const QString &text) override;
    QString text() const override;
};

} // namespace vantrel
