#include "foundations/Column.h"

#include "foundations/Text.h"

#include <array>
#include <utility>

namespace vantrel {

namespace {

constexpr std::array<std::pair<ColumnType, QStringView>, 3> TypeNames{{
    {ColumnType::Queue, u"Queue"},
    {ColumnType::Active, u"Active"},
    {ColumnType::Completed, u"Completed"},
}};

constexpr std::array<std::pair<WIPLimitType, QStringView>, 2> LimitTypeNames{{
    {WIPLimitType::Column, u"Column"},
    {WIPLimitType::Swimlane, u"Swimlane"},
}};

constexpr std::array<std::pair<ColumnType, QStringView>, 3> DefaultNames{{
    {ColumnType::Queue, u"To Do"},
    {ColumnType::Active, u"Doing"},
    {ColumnType::Completed, u"Done"},
}};

template <typename Table, typename Key>
QString nameIn(const Table &table, Key key)
{
    for (const auto &[value, name] : table) {
        if (value == key) return name.toString();
    }
    Q_UNREACHABLE();
}

template <typename Key, std::size_t N>
std::optional<Key> keyIn(const std::array<std::pair<Key, QStringView>, N> &table, QStringView text)
{
    for (const auto &[value, name] : table) {
        if (name == text) return value;
    }
    return std::nullopt;
}

} // namespace

QString rawValue(ColumnType type)
{
    return nameIn(TypeNames, type);
}

QString rawValue(WIPLimitType type)
{
    return nameIn(LimitTypeNames, type);
}

std::optional<ColumnType> columnTypeFromRawValue(QStringView text)
{
    return keyIn(TypeNames, text);
}

std::optional<WIPLimitType> wipLimitTypeFromRawValue(QStringView text)
{
    return keyIn(LimitTypeNames, text);
}

std::vector<Column> Column::defaultColumns()
{
    constexpr int doingLimit = 5;
    const auto column = [](const QString &name, ColumnType type, int position, std::optional<int> limit,
                           const QString &stableId) {
        return Column{ColumnId::create(), name, type, position, limit, WIPLimitType::Swimlane, {}, stableId};
    };
    return {
        column(QStringLiteral("To Do"), ColumnType::Queue, 0, {}, QStringLiteral("default_todo")),
        column(QStringLiteral("Doing"), ColumnType::Active, 1, doingLimit, QStringLiteral("default_doing")),
        column(QStringLiteral("Done"), ColumnType::Completed, 2, {}, QStringLiteral("default_done")),
    };
}

QString generateStableId(ColumnType type, const QString &name, int position)
{
    const QString typeName = rawValue(type).toLower();
    if (nameIn(DefaultNames, type) == name) {
        return u"default_" + typeName;
    }
    const QString hash = QString::number(static_cast<qint64>(stableHash(name)));
    return typeName + u'_' + hash + u'_' + QString::number(position);
}

} // namespace vantrel
