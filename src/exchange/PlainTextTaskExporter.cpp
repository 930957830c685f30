#include "exchange/PlainTextTaskExporter.h"

#include "foundations/Pattern.h"
#include "foundations/PlainTextWorkItem.h"

#include <array>

namespace vantrel {

namespace {

// Shown by TaskExportViewModel, which translates them.
constexpr std::array ScopeLabels{
    QT_TRANSLATE_NOOP("vantrel::TaskExportViewModel", "Plain Text Tasks Only"),
    QT_TRANSLATE_NOOP("vantrel::TaskExportViewModel", "All Tasks"),
    QT_TRANSLATE_NOOP("vantrel::TaskExportViewModel", "Visible Tasks"),
    QT_TRANSLATE_NOOP("vantrel::TaskExportViewModel", "Selected Tasks"),
    QT_TRANSLATE_NOOP("vantrel::TaskExportViewModel", "Selected Column"),
    QT_TRANSLATE_NOOP("vantrel::TaskExportViewModel", "Selected Swimlane"),
};
constexpr std::array FormatLabels{
    QT_TRANSLATE_NOOP("vantrel::TaskExportViewModel", "Markdown Checkboxes"),
    QT_TRANSLATE_NOOP("vantrel::TaskExportViewModel", "Grouped by Column"),
    QT_TRANSLATE_NOOP("vantrel::TaskExportViewModel", "Grouped by Swimlane"),
};

/** `line` with what stands between the brackets of a checkbox at its head replaced; a line without one as it
 * is. */
QString withCheckbox(const QString &line, bool isChecked)
{
    if (!line.startsWith(u'-')) {
        return line;
    }
    qsizetype open = 1;
    while (open < line.size() && line.at(open).isSpace()) {
        ++open;
    }
    if (open == line.size() || line.at(open) != u'[') {
        return line;
    }
    const qsizetype close = line.indexOf(u']', open);
    if (close < 0) {
        return line;
    }
    const QStringView whole(line);
    return whole.first(open + 1) + (isChecked ? u'x' : u' ') + whole.sliced(close);
}

/** The hashtags of `task` that its name does not hold. */
QStringList unnamedHashtags(const PlainTextWorkItem &task)
{
    static const QRegularExpression hashtag = compilePattern(u"#(\\w+)");
    QStringList remaining = task.hashtags();
    if (!remaining.isEmpty()) {
        for (auto matches = hashtag.globalMatch(task.name()); matches.hasNext();) {
            remaining.removeAll(matches.next().captured(1));
        }
    }
    return remaining;
}

} // namespace

QString rawValue(ExportScope scope)
{
    return QString::fromLatin1(ScopeLabels.at(static_cast<std::size_t>(scope)));
}

QString rawValue(ExportFormat format)
{
    return QString::fromLatin1(FormatLabels.at(static_cast<std::size_t>(format)));
}

QString PlainTextTaskExporter::formatTask(const WorkItem &task) const
{
    const auto *plainText = qobject_cast<const PlainTextWorkItem *>(&task);
    if (plainText && plainText->originalText()) {
        return withCheckbox(*plainText->originalText(), task.isComplete());
    }
    return composedLine(task);
}

QString PlainTextTaskExporter::composedLine(const WorkItem &task) const
{
    QString line = (task.isComplete() ? u"- [x] " : u"- [ ] ") + task.name();
    if (const auto project = task.projectName(); project && !project->isEmpty()) {
        line += u" [" + *project + u']';
    }
    if (const auto tag = task.tagName(); tag && !tag->isEmpty()) {
        line += u" #" + *tag;
    }
    if (const auto *plainText = qobject_cast<const PlainTextWorkItem *>(&task)) {
        const QStringList hashtags = unnamedHashtags(*plainText);
        if (!hashtags.isEmpty()) {
            line += (line.endsWith(u' ') ? u"#" : u" #") + hashtags.join(u" #");
        }
    }
    if (task.dueDate()) {
        line += u" due " + m_locale.toString(task.dueDate()->toDateTime().date(), QLocale::ShortFormat);
    }
    return line;
}

QString PlainTextTaskExporter::exportTasks(const WorkItems &tasks) const
{
    QString text;
    for (const WorkItemPtr &task : tasks) {
        text += formatTask(*task) + u'\n';
    }
    text.chop(1);
    return text;
}

QString PlainTextTaskExporter::exportTasksFromColumn(const WorkItems &tasks, const QString &columnName,
                                                     const QSet<QString> &taskIds) const
{
    WorkItems members;
    std::copy_if(tasks.begin(), tasks.end(), std::back_inserter(members),
                 [&](const WorkItemPtr &task) { return taskIds.contains(task->id()); });
    return members.empty() ? QString() : u"# " + columnName + u"\n\n" + exportTasks(members);
}

QString PlainTextTaskExporter::exportTasksBySwimLanes(const WorkItems &tasks,
                                                      const std::vector<ExportGroup> &swimlanes) const
{
    QString text;
    for (const ExportGroup &swimlane : swimlanes) {
        const QString group = exportTasksFromColumn(tasks, swimlane.name, swimlane.taskIds);
        if (!group.isEmpty()) {
            text += (text.isEmpty() ? QString() : QStringLiteral("\n\n")) + group;
        }
    }
    return text;
}

} // namespace vantrel
