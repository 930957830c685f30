#pragma once

#include <QByteArray>

#include <optional>
#include <vector>

namespace vantrel {

/**
 * The text of an iCalendar file (RFC 5545), to be changed line by line: what is not touched stays as it is,
 * byte for byte. Knows lines and components, nothing of what they mean. A value.
 */
class IcsDocument
{
public:
    /** A component, by the places of its BEGIN and END lines. Holds until the next change of the document. */
    struct Component
    {
        qsizetype begin = 0;
        qsizetype end = 0;
    };

    /** True if each component that begins also ends, in order. */
    static bool isWhole(const QByteArray &text);

    /** Nothing if the text is not whole. */
    static std::optional<IcsDocument> parse(const QByteArray &text);

    QByteArray text() const;

    /** The components of that name in any calendar of the text, but not those within other components. */
    std::vector<Component> components(QByteArrayView name) const;

    /** The value of the component's first property of that name, unfolded, as written. */
    std::optional<QByteArray> value(Component component, QByteArrayView property) const;
    /** How many properties of that name the component has, not counting those of its parts. */
    int count(Component component, QByteArrayView property) const;

    /** Gives the first property of that name another value and keeps its parameters; adds it if there is
     * none.
     */
    void setValue(Component &component, QByteArrayView property, const QByteArray &value);
    /** The same with parameters, which begin with ";" or are empty. */
    void setProperty(Component &component, QByteArrayView property, const QByteArray &parameters,
                     const QByteArray &value);
    /** Removes all properties of that name. */
    void remove(Component &component, QByteArrayView property);
    void remove(Component component);

    /** `text` as a property value of type TEXT. */
    static QByteArray escaped(const QString &text);

private:
    /** A content line with its folds and its line end. */
    using Line = QByteArray;

    qsizetype find(Component component, QByteArrayView property) const;
    /** Calls `visit` with the place of each property of the component's own until it returns true. */
    template <typename Visit>
    void visitProperties(Component component, Visit visit) const;
    Line makeLine(const QByteArray &unfolded) const;

    std::vector<Line> m_lines;
    QByteArray m_lineEnd;
};

} // namespace vantrel
