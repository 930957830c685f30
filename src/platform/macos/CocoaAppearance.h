#pragma once

#include "feedback/DesktopAppearance.h"

#include <memory>

namespace vantrel {

/** The appearance that the application has been given, and the accessibility settings. GUI thread. */
class CocoaAppearance final : public DesktopAppearance
{
public:
    CocoaAppearance();
    ~CocoaAppearance() override;

    ColorScheme colorScheme() const override;
    bool prefersReducedMotion() const override;

private:
    struct Observers;
    std::unique_ptr<Observers> m_observers;
};

} // namespace vantrel
