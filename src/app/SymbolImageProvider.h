#pragma once

#include <QQuickImageProvider>

namespace vantrel {

/**
 * Draws the interface's symbols for "image://symbols/{name}/{colour}", the colour as six or eight hexadecimal
 * digits, at exactly the size asked for. An unknown name is a neutral square. Called on Qt Quick's image
 * threads.
 */
class SymbolImageProvider : public QQuickImageProvider
{
public:
    SymbolImageProvider() : QQuickImageProvider(QQuickImageProvider::Image) {}

    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override;
};

} // namespace vantrel
