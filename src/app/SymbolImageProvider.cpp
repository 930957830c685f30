#include "app/SymbolImageProvider.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

namespace vantrel {

namespace {

constexpr int DefaultSize = 20;

/** The drawing as it is in the resources, in black. */
QByteArray drawing(const QString &symbol)
{
    const auto path = [](const QString &name) -> QString {
        return u":/symbols/" + name + u".svg";
    };
    QFile file(path(symbol));
    if (!file.open(QIODevice::ReadOnly)) {
        file.setFileName(path(QStringLiteral("square")));
        if (!file.open(QIODevice::ReadOnly)) {
            return {};
        }
    }
    return file.readAll();
}

} // namespace

QImage SymbolImageProvider::requestImage(const QString &id, QSize *size, const QSize &requestedSize)
{
    const qsizetype slash = id.lastIndexOf(u'/');
    const QString symbol = id.first(std::max<qsizetype>(slash, 0));
    const QColor color(u'#' + id.sliced(slash + 1));

    QSize pixels = requestedSize;
    if (pixels.width() <= 0) pixels.setWidth(pixels.height() > 0 ? pixels.height() : DefaultSize);
    if (pixels.height() <= 0) pixels.setHeight(pixels.width());
    if (size) {
        *size = pixels;
    }

    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QSvgRenderer renderer(drawing(symbol));
    QPainter painter(&image);
    renderer.render(&painter, QRectF(QPointF(), pixels));
    // The drawing's alpha is the shape; the colour is laid into it.
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color.isValid() ? color : QColor(Qt::black));
    return image;
}

} // namespace vantrel
