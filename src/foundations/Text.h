#pragma once

#include <QString>

#include <optional>

namespace vantrel {

/** FNV-1a, 64 bit, over the UTF-8 form: stable across runs, not cryptographic. */
quint64 stableHash(QStringView text);

/** Reads an optional sign and ASCII digits, nothing else; nothing if it does not fit 64 bits. */
std::optional<qint64> wholeNumberFromText(QStringView text);

/** The shortest decimal text that reads back as `number`, always with a decimal point: "2.0", "0.1". */
QString realText(double number);

} // namespace vantrel
