#include "foundations/Color.h"

#include <algorithm>

namespace vantrel {

namespace {

int hexDigitValue(QChar c)
{
    if (c >= u'0' && c <= u'9') return c.unicode() - u'0';
    if (c >= u'a' && c <= u'f') return c.unicode() - u'a' + 10;
    if (c >= u'A' && c <= u'F') return c.unicode() - u'A' + 10;
    return -1;
}

quint32 leadingHexNumber(QStringView text)
{
    quint32 number = 0;
    for (const QChar c : text) {
        const int digit = hexDigitValue(c);
        if (digit < 0) break;
        number = number * 16 + static_cast<quint32>(digit);
    }
    return number;
}

int byteOf(quint32 number, int shift)
{
    return static_cast<int>((number >> shift) & 0xFFu);
}

} // namespace

Color colorFromHex(QStringView text)
{
    const auto isAlphanumeric = [](QChar c) {
        return c.isLetterOrNumber();
    };
    const auto first = std::find_if(text.begin(), text.end(), isAlphanumeric);
    const auto last = std::find_if(text.rbegin(), std::make_reverse_iterator(first), isAlphanumeric).base();
    const QStringView digits(first, last);
    const quint32 number = digits.size() <= 8 ? leadingHexNumber(digits) : 0;
    switch (digits.size()) {
    case 3: {
        const auto nibble = [number](int shift) {
            return static_cast<int>((number >> shift) & 0xFu) * 17;
        };
        return {nibble(8), nibble(4), nibble(0), 255};
    }
    case 6:
        return {byteOf(number, 16), byteOf(number, 8), byteOf(number, 0), 255};
    case 8:
        return {byteOf(number, 16), byteOf(number, 8), byteOf(number, 0), byteOf(number, 24)};
    default:
        return {};
    }
}

QString hexText(const Color &color)
{
    const auto channel = [](int value) {
        return QStringLiteral("%1").arg(std::clamp(value, 0, 255), 2, 16, QLatin1Char('0')).toUpper();
    };
    return u'#' + channel(color.red) + channel(color.green) + channel(color.blue);
}

} // namespace vantrel
