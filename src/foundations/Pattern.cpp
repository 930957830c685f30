#include "foundations/Pattern.h"

namespace vantrel {

QRegularExpression compilePattern(QStringView pattern, QRegularExpression::PatternOptions options)
{
    QString translated;
    bool isInClass = false;
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        const QChar c = pattern.at(i);
        if (c == u'\\' && i + 1 < pattern.size()) {
            const QChar escaped = pattern.at(++i);
            QStringView members;
            if (escaped == u'w') members = u"\\p{L}\\p{M}\\p{Nd}\\p{Nl}\\p{Pc}\\x{200C}\\x{200D}";
            if (escaped == u's') members = u"\\t\\n\\x{0B}\\f\\r\\x{85}\\p{Z}";
            if (escaped == u'd') members = u"\\p{Nd}";
            if (members.isEmpty()) {
                translated += c;
                translated += escaped;
            } else {
                translated += isInClass ? members.toString() : u'[' + members + u']';
            }
            continue;
        }
        if (c == u'[') isInClass = true;
        if (c == u']') isInClass = false;
        translated += c;
    }
    return QRegularExpression(translated, options | QRegularExpression::UseUnicodePropertiesOption);
}

} // namespace vantrel
