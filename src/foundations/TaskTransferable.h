#pragma once

#include "foundations/Ids.h"

#include <QByteArray>

#include <optional>

namespace vantrel {

/** What a dragged card carries. */
struct TaskTransferable
{
    QString id;
    std::optional<ColumnId> sourceColumnId;
    std::optional<SwimLaneId> sourceSwimLaneId;

    friend bool operator==(const TaskTransferable &, const TaskTransferable &) = default;

    /** The type under which the record itself travels, as JSON. */
    static constexpr QStringView ContentType = u"com.vantrel.apps.Vantrel.taskTransferable";
    /** The same bytes under a name that other windowing systems let pass: it has a slash. */
    static constexpr QStringView PortableContentType = u"application/x-vantrel-task-transferable+json";

    QByteArray toJson() const;
    /** Nothing if `json` is no record. */
    static std::optional<TaskTransferable> fromJson(const QByteArray &json);
    /** The payload of a plain text drop: the text is the task id. Invalid UTF-8 is repaired. */
    static TaskTransferable fromText(const QByteArray &utf8);
};

} // namespace vantrel
