#pragma once

#include <QString>

namespace vantrel {

/** `text` with each half of a surrogate pair that stands alone replaced by U+FFFD: what every matcher can
 * read. */
inline QString repairedUtf16(const QString &text)
{
    return text.isValidUtf16() ? text : QString::fromUtf8(text.toUtf8());
}

} // namespace vantrel
