#include "foundations/TaskTransferable.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace vantrel {

QByteArray TaskTransferable::toJson() const
{
    QJsonObject object{{QStringLiteral("id"), id}};
    if (sourceColumnId) object.insert(QStringLiteral("sourceColumnId"), sourceColumnId->text());
    if (sourceSwimLaneId) object.insert(QStringLiteral("sourceSwimLaneId"), sourceSwimLaneId->text());
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

std::optional<TaskTransferable> TaskTransferable::fromJson(const QByteArray &json)
{
    const QJsonObject object = QJsonDocument::fromJson(json).object();
    const QJsonValue id = object.value(QLatin1StringView("id"));
    if (!id.isString()) {
        return std::nullopt;
    }
    return TaskTransferable{
        id.toString(), ColumnId::fromText(object.value(QLatin1StringView("sourceColumnId")).toString()),
        SwimLaneId::fromText(object.value(QLatin1StringView("sourceSwimLaneId")).toString())};
}

TaskTransferable TaskTransferable::fromText(const QByteArray &utf8)
{
    return TaskTransferable{QString::fromUtf8(utf8), {}, {}};
}

} // namespace vantrel
