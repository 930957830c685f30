#include "platform/qt/QtUrlOpener.h"

#include <QDesktopServices>

namespace vantrel {

bool QtUrlOpener::open(const QUrl &url)
{
    return QDesktopServices::openUrl(url);
}

} // namespace vantrel
