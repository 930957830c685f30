#include "persistence/BoardConfigurationJson.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>
#include <limits>

namespace vantrel {

namespace {

constexpr auto IdKey = QLatin1StringView("id");
constexpr auto NameKey = QLatin1StringView("name");
constexpr auto TypeKey = QLatin1StringView("type");
constexpr auto PositionKey = QLatin1StringView("position");
constexpr auto WipLimitKey = QLatin1StringView("wipLimit");
constexpr auto WipLimitTypeKey = QLatin1StringView("wipLimitType");
constexpr auto ColorHexKey = QLatin1StringView("colorHex");
constexpr auto StableIdKey = QLatin1StringView("stableId");
constexpr auto IconKey = QLatin1StringView("icon");
constexpr auto IsExpandedKey = QLatin1StringView("isExpanded");
constexpr auto HeightKey = QLatin1StringView("height");

/** Reads the keys of one record and remembers the first that makes no sense. */
class RecordReader
{
public:
    RecordReader(const QJsonValue &value, qsizetype index) : m_object(value.toObject()), m_index(index)
    {
        if (!value.isObject()) {
            fail({});
        }
    }

    /** Empty if all keys made sense. */
    const QString &error() const { return m_error; }

    QString text(QLatin1StringView key)
    {
        return required<QString>(key, [](const QJsonValue &value) { return textOf(value); });
    }

    std::optional<QString> optionalText(QLatin1StringView key)
    {
        return optional<QString>(key, [](const QJsonValue &value) { return textOf(value); });
    }

    int integer(QLatin1StringView key)
    {
        return required<int>(key, [](const QJsonValue &value) { return integerOf(value); });
    }

    std::optional<int> optionalInteger(QLatin1StringView key)
    {
        return optional<int>(key, [](const QJsonValue &value) { return integerOf(value); });
    }

    double real(QLatin1StringView key)
    {
        return required<double>(key, [](const QJsonValue &value) {
            return value.isDouble() ? std::optional(value.toDouble()) : std::nullopt;
        });
    }

    bool boolean(QLatin1StringView key)
    {
        return required<bool>(key, [](const QJsonValue &value) {
            return value.isBool() ? std::optional(value.toBool()) : std::nullopt;
        });
    }

    template <typename T, typename Read>
    T required(QLatin1StringView key, Read read)
    {
        const std::optional<T> result = read(m_object.value(key));
        if (!result) {
            fail(key);
        }
        return result.value_or(T());
    }

    template <typename T, typename Read>
    std::optional<T> optional(QLatin1StringView key, Read read)
    {
        const QJsonValue value = m_object.value(key);
        return value.isUndefined() || value.isNull() ? std::nullopt : std::optional(required<T>(key, read));
    }

private:
    static std::optional<QString> textOf(const QJsonValue &value)
    {
        return value.isString() ? std::optional(value.toString()) : std::nullopt;
    }

    static std::optional<int> integerOf(const QJsonValue &value)
    {
        const double number = value.toDouble(std::numeric_limits<double>::quiet_NaN());
        const bool fits = number == std::trunc(number) && std::abs(number) <= std::numeric_limits<int>::max();
        return fits ? std::optional(static_cast<int>(number)) : std::nullopt;
    }

    void fail(QLatin1StringView key)
    {
        if (m_error.isEmpty()) {
            m_error = u"record " + QString::number(m_index + 1) + u": " +
                      (key.isEmpty() ? QStringLiteral("not an object")
                                     : u"the value of \"" + key + u"\" is missing or makes no sense");
        }
    }

    QJsonObject m_object;
    qsizetype m_index;
    QString m_error;
};

template <typename Id>
Id readId(RecordReader &reader)
{
    return reader.required<Id>(IdKey, [](const QJsonValue &value) { return Id::fromText(value.toString()); });
}

Column readColumn(RecordReader &reader)
{
    Column column;
    column.id = readId<ColumnId>(reader);
    column.name = reader.text(NameKey);
    column.type = reader.required<ColumnType>(
        TypeKey, [](const QJsonValue &value) { return columnTypeFromRawValue(value.toString()); });
    column.position = reader.integer(PositionKey);
    column.wipLimit = reader.optionalInteger(WipLimitKey);
    column.wipLimitType = reader
                              .optional<WIPLimitType>(WipLimitTypeKey,
                                                      [](const QJsonValue &value) {
                                                          return wipLimitTypeFromRawValue(value.toString());
                                                      })
                              .value_or(WIPLimitType::Swimlane);
    column.colorHex = reader.optionalText(ColorHexKey);
    column.stableId = reader.text(StableIdKey);
    return column;
}

SwimLane readSwimLane(RecordReader &reader)
{
    SwimLane lane;
    lane.id = readId<SwimLaneId>(reader);
    lane.name = reader.text(NameKey);
    lane.icon = reader.optionalText(IconKey);
    lane.position = reader.integer(PositionKey);
    lane.colorHex = reader.optionalText(ColorHexKey);
    lane.isExpanded = reader.boolean(IsExpandedKey);
    lane.stableId = reader.text(StableIdKey);
    lane.height = reader.real(HeightKey);
    return lane;
}

template <typename Record>
DecodedRecords<Record> decode(const QByteArray &json, Record (*readRecord)(RecordReader &))
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    if (!document.isArray()) {
        return {{},
                parseError.error != QJsonParseError::NoError ? parseError.errorString()
                                                             : QStringLiteral("not an array")};
    }
    const QJsonArray array = document.array();
    std::vector<Record> records;
    for (qsizetype i = 0; i < array.size(); ++i) {
        RecordReader reader(array.at(i), i);
        records.push_back(readRecord(reader));
        if (!reader.error().isEmpty()) {
            return {{}, reader.error()};
        }
    }
    return {std::move(records), {}};
}

template <typename T>
void insertIfPresent(QJsonObject &object, QLatin1StringView key, const std::optional<T> &value)
{
    if (value) {
        object.insert(key, *value);
    }
}

} // namespace

QByteArray encodeColumns(const std::vector<Column> &columns)
{
    QJsonArray array;
    for (const Column &column : columns) {
        QJsonObject object{{IdKey, column.id.text()},
                           {NameKey, column.name},
                           {TypeKey, rawValue(column.type)},
                           {PositionKey, column.position},
                           {WipLimitTypeKey, rawValue(column.wipLimitType)}};
        insertIfPresent(object, WipLimitKey, column.wipLimit);
        insertIfPresent(object, ColorHexKey, column.colorHex);
        insertIfPresent(object, StableIdKey, column.stableId);
        array.append(object);
    }
    return QJsonDocument(array).toJson(QJsonDocument::Compact);
}

QByteArray encodeSwimLanes(const std::vector<SwimLane> &swimLanes)
{
    QJsonArray array;
    for (const SwimLane &lane : swimLanes) {
        QJsonObject object{{IdKey, lane.id.text()},      {NameKey, lane.name},
                           {PositionKey, lane.position}, {IsExpandedKey, lane.isExpanded},
                           {StableIdKey, lane.stableId}, {HeightKey, lane.height}};
        insertIfPresent(object, IconKey, lane.icon);
        insertIfPresent(object, ColorHexKey, lane.colorHex);
        array.append(object);
    }
    return QJsonDocument(array).toJson(QJsonDocument::Compact);
}

DecodedRecords<Column> decodeColumns(const QByteArray &json)
{
    return decode<Column>(json, &readColumn);
}

DecodedRecords<SwimLane> decodeSwimLanes(const QByteArray &json)
{
    return decode<SwimLane>(json, &readSwimLane);
}

} // namespace vantrel
