#pragma once

#include <QString>

namespace vantrel {

/** An sRGB colour, one byte a channel. */
struct Color
{
    int red = 0;
    int green = 0;
    int blue = 0;
    int alpha = 255;

    friend bool operator==(const Color &, const Color &) = default;
};

/**
 * Reads RGB, RRGGBB or AARRGGBB, after dropping what is not alphanumeric at both ends. The length of what is
 * left decides; any other length is opaque black. Only leading hexadecimal digits count.
 */
Color colorFromHex(QStringView text);

/** "#RRGGBB", upper case; alpha is dropped. */
QString hexText(const Color &color);

} // namespace vantrel
