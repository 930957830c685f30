#include "sources/reminders/vdir/IcsDocument.h"

#include <QString>

#include <algorithm>

namespace vantrel {

namespace {

constexpr qsizetype LongestLine = 75;

bool isFold(char next)
{
    return next == ' ' || next == '\t';
}

QByteArray unfolded(const QByteArray &line)
{
    QByteArray result;
    result.reserve(line.size());
    for (qsizetype at = 0; at < line.size(); ++at) {
        if (line[at] == '\n') {
            if (result.endsWith('\r')) {
                result.chop(1);
            }
            ++at; // the blank of the fold
            continue;
        }
        result.append(line[at]);
    }
    return result;
}

/** The place of the colon before the value: one in quotes belongs to a parameter. */
qsizetype valueStart(const QByteArray &line)
{
    bool isQuoted = false;
    for (qsizetype at = 0; at < line.size(); ++at) {
        if (line[at] == '"') {
            isQuoted = !isQuoted;
        } else if (line[at] == ':' && !isQuoted) {
            return at;
        }
    }
    return -1;
}

/** Empty for a line that has no value: it is no property. */
QByteArray nameOf(const QByteArray &line)
{
    if (valueStart(line) < 0) {
        return {};
    }
    const auto end = std::find_if(line.begin(), line.end(), [](char c) { return c == ':' || c == ';'; });
    return line.left(end - line.begin()).trimmed().toUpper();
}

struct Delimiter
{
    bool isBegin = false;
    QByteArray name;
};

/** True for the first letter of BEGIN and END. */
bool mayDelimit(char first)
{
    return first == 'B' || first == 'b' || first == 'E' || first == 'e';
}

std::optional<Delimiter> delimiter(const QByteArray &line)
{
    if (line.isEmpty() || !mayDelimit(line[0])) {
        return std::nullopt;
    }
    const QByteArray whole = unfolded(line);
    const QByteArray name = nameOf(whole);
    if (name != "BEGIN" && name != "END") {
        return std::nullopt;
    }
    return Delimiter{name == "BEGIN", whole.mid(valueStart(whole) + 1).trimmed().toUpper()};
}

/** Where the content line that begins at `begin` ends, behind its line end: folds belong to it. */
qsizetype lineEnd(const QByteArray &text, qsizetype begin)
{
    qsizetype end = text.indexOf('\n', begin);
    while (end >= 0 && end + 1 < text.size() && isFold(text[end + 1])) {
        end = text.indexOf('\n', end + 1);
    }
    return end < 0 ? text.size() : end + 1;
}

} // namespace

bool IcsDocument::isWhole(const QByteArray &text)
{
    std::vector<QByteArray> open;
    for (qsizetype begin = 0; begin < text.size();) {
        const qsizetype next = lineEnd(text, begin);
        const auto mark = mayDelimit(text[begin])
                              ? delimiter(QByteArray::fromRawData(text.constData() + begin, next - begin))
                              : std::nullopt;
        begin = next;
        if (!mark) {
            continue;
        }
        if (mark->isBegin) {
            open.push_back(mark->name);
        } else if (open.empty() || open.back() != mark->name) {
            return false;
        } else {
            open.pop_back();
        }
    }
    return open.empty();
}

std::optional<IcsDocument> IcsDocument::parse(const QByteArray &text)
{
    if (!isWhole(text)) {
        return std::nullopt;
    }
    IcsDocument document;
    for (qsizetype begin = 0; begin < text.size();) {
        const qsizetype next = lineEnd(text, begin);
        document.m_lines.push_back(text.mid(begin, next - begin));
        begin = next;
    }
    document.m_lineEnd = text.contains("\r\n") ? "\r\n" : "\n";
    return document;
}

QByteArray IcsDocument::text() const
{
    QByteArray result;
    for (const Line &line : m_lines) {
        result.append(line);
    }
    return result;
}

std::vector<IcsDocument::Component> IcsDocument::components(QByteArrayView name) const
{
    std::vector<Component> found;
    std::vector<qsizetype> open;
    for (qsizetype at = 0; at < qsizetype(m_lines.size()); ++at) {
        const auto mark = delimiter(m_lines[size_t(at)]);
        if (!mark) {
            continue;
        }
        if (mark->isBegin) {
            open.push_back(at);
            continue;
        }
        const Component component{open.back(), at};
        open.pop_back();
        if (mark->name == name && open.size() <= 1) {
            found.push_back(component);
        }
    }
    return found;
}

template <typename Visit>
void IcsDocument::visitProperties(Component component, Visit visit) const
{
    int depth = 0;
    for (qsizetype at = component.begin + 1; at < component.end; ++at) {
        if (const auto mark = delimiter(m_lines[size_t(at)])) {
            depth += mark->isBegin ? 1 : -1;
        } else if (depth == 0 && visit(at)) {
            return;
        }
    }
}

qsizetype IcsDocument::find(Component component, QByteArrayView property) const
{
    qsizetype found = -1;
    visitProperties(component, [&](qsizetype at) {
        if (nameOf(unfolded(m_lines[size_t(at)])) == property) {
            found = at;
        }
        return found >= 0;
    });
    return found;
}

std::optional<QByteArray> IcsDocument::value(Component component, QByteArrayView property) const
{
    const qsizetype at = find(component, property);
    if (at < 0) {
        return std::nullopt;
    }
    const QByteArray line = unfolded(m_lines[size_t(at)]);
    return line.mid(valueStart(line) + 1).trimmed();
}

int IcsDocument::count(Component component, QByteArrayView property) const
{
    int found = 0;
    visitProperties(component, [&](qsizetype at) {
        found += nameOf(unfolded(m_lines[size_t(at)])) == property ? 1 : 0;
        return false;
    });
    return found;
}

void IcsDocument::setValue(Component &component, QByteArrayView property, const QByteArray &value)
{
    const qsizetype at = find(component, property);
    if (at < 0) {
        setProperty(component, property, {}, value);
        return;
    }
    const QByteArray line = unfolded(m_lines[size_t(at)]);
    m_lines[size_t(at)] = makeLine(line.left(valueStart(line) + 1) + value);
}

void IcsDocument::setProperty(Component &component, QByteArrayView property, const QByteArray &parameters,
                              const QByteArray &value)
{
    const Line line = makeLine(property.toByteArray() + parameters + ':' + value);
    const qsizetype at = find(component, property);
    if (at >= 0) {
        m_lines[size_t(at)] = line;
        return;
    }
    qsizetype place = component.begin + 1;
    while (place < component.end && !delimiter(m_lines[size_t(place)])) {
        ++place;
    }
    m_lines.insert(m_lines.begin() + place, line);
    ++component.end;
}

void IcsDocument::remove(Component &component, QByteArrayView property)
{
    for (qsizetype at = find(component, property); at >= 0; at = find(component, property)) {
        m_lines.erase(m_lines.begin() + at);
        --component.end;
    }
}

void IcsDocument::remove(Component component)
{
    m_lines.erase(m_lines.begin() + component.begin, m_lines.begin() + component.end + 1);
}

IcsDocument::Line IcsDocument::makeLine(const QByteArray &unfolded) const
{
    Line line;
    qsizetype length = 0;
    for (qsizetype at = 0; at < unfolded.size(); ++at) {
        const bool isCharacterStart = (static_cast<unsigned char>(unfolded[at]) & 0xC0) != 0x80;
        // A character of UTF-8 has up to four bytes: it must not be torn apart.
        if (isCharacterStart && length > LongestLine - 4) {
            line.append(m_lineEnd).append(' ');
            length = 1;
        }
        line.append(unfolded[at]);
        ++length;
    }
    return line.append(m_lineEnd);
}

QByteArray IcsDocument::escaped(const QString &text)
{
    QByteArray result;
    const QByteArray utf8 = text.toUtf8();
    for (const char c : utf8) {
        switch (c) {
        case '\\':
        case ';':
        case ',':
            result.append('\\').append(c);
            break;
        case '\n':
            result.append("\\n");
            break;
        default:
            // Other control characters have no form in a text value.
            if (static_cast<unsigned char>(c) >= 0x20 || c == '\t') {
                result.append(c);
            }
        }
    }
    return result;
}

} // namespace vantrel
