#pragma once

#include <QByteArray>
#include <QHash>

namespace vantrel {

/** What the texts of a column say, decoded once for all the rows of a query that repeat them. */
template <typename Value>
class DecodedOnce
{
public:
    using Decode = Value (*)(QByteArrayView);

    explicit DecodedOnce(Decode decode) : m_decode(decode) {}

    /** Valid until the next call. */
    const Value &operator()(QByteArrayView utf8)
    {
        const auto known = m_values.constFind(QByteArray::fromRawData(utf8.data(), utf8.size()));
        return known != m_values.constEnd() ? *known : *m_values.insert(utf8.toByteArray(), m_decode(utf8));
    }

private:
    Decode m_decode;
    QHash<QByteArray, Value> m_values;
};

} // namespace vantrel
