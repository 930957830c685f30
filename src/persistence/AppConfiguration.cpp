#include "persistence/AppConfiguration.h"

#include "foundations/Ids.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace vantrel {

namespace {
constexpr auto LastBoardIdKey = QLatin1StringView("lastBoardId");
constexpr auto RefreshIntervalKey = QLatin1StringView("refreshInterval");
constexpr auto AutoSyncEnabledKey = QLatin1StringView("autoSyncEnabled");
constexpr auto ZoomLevelKey = QLatin1StringView("zoomLevel");
} // namespace

QByteArray AppConfiguration::toJson() const
{
    QJsonObject object{{RefreshIntervalKey, refreshInterval},
                       {AutoSyncEnabledKey, autoSyncEnabled},
                       {ZoomLevelKey, zoomLevel}};
    if (lastBoardId) {
        object.insert(LastBoardIdKey, uuidText(*lastBoardId));
    }
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

std::optional<AppConfiguration> AppConfiguration::fromJson(const QByteArray &json)
{
    const QJsonObject object = QJsonDocument::fromJson(json).object();
    const QJsonValue boardId = object.value(LastBoardIdKey);
    const QJsonValue interval = object.value(RefreshIntervalKey);
    const QJsonValue autoSync = object.value(AutoSyncEnabledKey);
    const QJsonValue zoom = object.value(ZoomLevelKey);
    const bool hasBoardId = !boardId.isUndefined() && !boardId.isNull();
    const std::optional<QUuid> readBoardId = uuidFromText(boardId.toString());
    if (!interval.isDouble() || !autoSync.isBool() || !zoom.isDouble() || (hasBoardId && !readBoardId)) {
        return std::nullopt;
    }
    return AppConfiguration{hasBoardId ? readBoardId : std::nullopt, interval.toDouble(), autoSync.toBool(),
                            zoom.toDouble()};
}

} // namespace vantrel
