#pragma once

#include "feedback/DesktopAppearance.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace vantrel {

/** How the desktop wants the window to look, for the theme. Owned by AppViewModel; GUI thread. */
class AppearanceModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program")
    Q_PROPERTY(bool dark READ isDark NOTIFY changed)
    Q_PROPERTY(bool reducedMotion READ isMotionReduced NOTIFY changed)
public:
    explicit AppearanceModel(const DesktopAppearance &appearance, QObject *parent = nullptr);

    bool isDark() const { return m_appearance.colorScheme() == DesktopAppearance::ColorScheme::Dark; }
    bool isMotionReduced() const { return m_appearance.prefersReducedMotion(); }

Q_SIGNALS:
    void changed();

private:
    const DesktopAppearance &m_appearance;
};

} // namespace vantrel
