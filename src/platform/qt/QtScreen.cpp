#include "platform/qt/QtScreen.h"

#include <QGuiApplication>
#include <QScreen>

namespace vantrel {

std::optional<double> QtScreen::height() const
{
    const QScreen *primary = QGuiApplication::primaryScreen();
    return primary ? std::optional<double>(primary->geometry().height()) : std::nullopt;
}

} // namespace vantrel
