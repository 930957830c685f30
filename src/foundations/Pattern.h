#pragma once

#include <QRegularExpression>

namespace vantrel {

/**
 * Compiles `pattern` with \w, \s and \d in their Unicode meaning (UTS #18, annex C): letters with their
 * marks, numbers, connectors and joiners; any white space; any decimal digit. PCRE's own classes drop
 * combining marks even with Unicode properties on. Compile once and keep the result.
 */
QRegularExpression
compilePattern(QStringView pattern,
               QRegularExpression::PatternOptions options = QRegularExpression::NoPatternOption);

} // namespace vantrel
