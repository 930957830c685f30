#pragma once

#include "foundations/WorkItem.h"
#include "sources/TaskManagerProtocol.h"

#include <QLocale>
#include <QSet>

#include <map>
#include <vector>

namespace vantrel {

/** Which tasks are exported. The raw values are the labels. */
enum class ExportScope {
    PlainTextTasks,
    AllTasks,
    VisibleTasks,
    SelectedTasks,
    SelectedColumn,
    SelectedSwimLane
};

inline constexpr std::array AllExportScopes{ExportScope::PlainTextTasks, ExportScope::AllTasks,
                                            ExportScope::VisibleTasks,   ExportScope::SelectedTasks,
                                            ExportScope::SelectedColumn, ExportScope::SelectedSwimLane};

enum class ExportFormat { PlainCheckbox, ColumnOrganized, SwimLaneOrganized };

inline constexpr std::array AllExportFormats{ExportFormat::PlainCheckbox, ExportFormat::ColumnOrganized,
                                             ExportFormat::SwimLaneOrganized};

/** "Plain Text Tasks Only" and so on; "Markdown Checkboxes" and so on. */
QString rawValue(ExportScope scope);
QString rawValue(ExportFormat format);

/** The tasks of one column or swimlane, under its name. */
struct ExportGroup
{
    QString name;
    QSet<QString> taskIds;
};

/**
 * Writes tasks as markdown checkbox lines. Dates are worded for the locale given. Remembers the days that it
 * has worded, for tasks share them: made for one export, used by one thread.
 */
class PlainTextTaskExporter
{
public:
    explicit PlainTextTaskExporter(QLocale locale = QLocale()) : m_locale(std::move(locale)) {}

    /** One line: a plain text task as first written with its present checkbox, any other from its fields. */
    QString formatTask(const WorkItem &task) const;

    /** The lines, joined by line feeds, without a final one. */
    QString exportTasks(const WorkItems &tasks) const;

    /** A heading and the lines of those of `tasks` that are in the group; empty if none is. */
    QString exportTasksFromColumn(const WorkItems &tasks, const QString &columnName,
                                  const QSet<QString> &taskIds) const;

    /** The groups that are not empty, two line feeds between them. */
    QString exportTasksBySwimLanes(const WorkItems &tasks, const std::vector<ExportGroup> &swimlanes) const;

private:
    struct Day
    {
        Date end;
        QString text;
    };

    void appendLine(const WorkItem &task, QString &text) const;
    void appendFields(const WorkItem &task, QString &text) const;
    const QString &dayOf(Date date) const;

    QLocale m_locale;
    /** By their first moments. */
    mutable std::map<Date, Day> m_days;
};

} // namespace vantrel
