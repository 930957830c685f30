#pragma once

#include "feedback/DesktopPorts.h"

namespace vantrel {

/** The primary screen as Qt sees it. GUI thread. */
class QtScreen final : public Screen
{
public:
    std::optional<double> height() const override;
};

} // namespace vantrel
