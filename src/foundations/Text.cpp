#include "foundations/Text.h"

#include <QLocale>

namespace vantrel {

quint64 stableHash(QStringView text)
{
    constexpr quint64 offsetBasis = 14695981039346656037ULL;
    constexpr quint64 prime = 1099511628211ULL;
    quint64 hash = offsetBasis;
    const QByteArray bytes = text.toUtf8();
    for (const char byte : bytes) {
        hash = (hash ^ static_cast<unsigned char>(byte)) * prime;
    }
    return hash;
}

std::optional<qint64> wholeNumberFromText(QStringView text)
{
    const bool hasSign = text.startsWith(u'+') || text.startsWith(u'-');
    const QStringView digits = hasSign ? text.sliced(1) : text;
    const auto isDigit = [](QChar c) {
        return c >= u'0' && c <= u'9';
    };
    if (digits.isEmpty() || !std::all_of(digits.begin(), digits.end(), isDigit)) {
        return std::nullopt;
    }
    bool fits = false;
    const qint64 number = text.toLongLong(&fits);
    return fits ? std::optional(number) : std::nullopt;
}

QString realText(double number)
{
    QString text = QString::number(number, 'g', QLocale::FloatingPointShortest);
    const bool looksIntegral = !text.contains(u'.') && !text.contains(u'e') && !text.contains(u'n');
    return looksIntegral ? text + u".0" : text;
}

} // namespace vantrel
