#pragma once

#include <QObject>

namespace vantrel {

/** How the desktop wants its programs to look. A port; GUI thread; owned by the platform. */
class DesktopAppearance : public QObject
{
    Q_OBJECT
public:
    enum class ColorScheme { Light, Dark };
    Q_ENUM(ColorScheme)

    virtual ColorScheme colorScheme() const = 0;
    /** True if the user has asked the desktop for less motion. */
    virtual bool prefersReducedMotion() const = 0;

Q_SIGNALS:
    /** The user has changed the desktop's settings while the program runs. */
    void changed();

protected:
    using QObject::QObject;
};

} // namespace vantrel
