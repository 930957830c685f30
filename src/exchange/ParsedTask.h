#pragma once

#include "sources/TaskManagerProtocol.h"

namespace vantrel {

/** What was understood of one line of quick entry. */
struct ParsedTask
{
    /** What is left of the line; may be empty. */
    QString name;
    /** Never in the line; filled in by the user. */
    std::optional<QString> note;
    std::optional<Date> dueDate;
    std::optional<Date> deferDate;
    std::optional<QString> project;
    /** Without "#", in the order found. */
    QStringList tags;
    /** The source that the line names. */
    std::optional<TaskManagerType> taskManager;

    friend bool operator==(const ParsedTask &, const ParsedTask &) = default;
};

} // namespace vantrel
