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

/** Appends `line` with what stands between the brackets of a checkbox at its head replaced; a line without
 * one as it is. */
void appendWithCheckbox(QStringView line, bool isChecked, QString &text)
{
    qsizetype open = line.startsWith(u'-') ? 1 : line.size();
    while (open < line.size() && line.at(open).isSpace()) {
        ++open;
    }
    const qsizetype close = open < line.size() && line.at(open) == u'[' ? line.indexOf(u']', open) : -1;
    if (close < 0) {
        text += line;
        return;
    }
    text += line.first(open + 1);
    text += isChecked ? u'x' : u' ';
    text += line.sliced(close);
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
    QString line;
    appendLine(task, line);
    return line;
}

void PlainTextTaskExporter::appendLine(const WorkItem &task, QString &text) const
{
    const auto *plainText = qobject_cast<const PlainTextWorkItem *>(&task);
    if (plainText && plainText->originalText()) {
        appendWithCheckbox(*plainText->originalText(), task.isComplete(), text);
    } else {
        appendFields(task, text);
    }
}

void PlainTextTaskExporter::appendFields(const WorkItem &task, QString &text) const
{
    text += task.isComplete() ? u"- [x] " : u"- [ ] ";
    text += task.name();
    if (const auto &project = task.project(); project && !project->name.isEmpty()) {
        text += u" [" + project->name + u']';
    }
    if (const auto &tag = task.tag(); tag && !tag->name.isEmpty()) {
        text += u" #" + tag->name;
    }
    if (const auto *plainText = qobject_cast<const PlainTextWorkItem *>(&task)) {
        const QStringList hashtags = unnamedHashtags(*plainText);
        if (!hashtags.isEmpty()) {
            text += (text.endsWith(u' ') ? u"#" : u" #") + hashtags.join(u" #");
        }
    }
    if (const auto date = task.dueDate()) {
        text += u" due " + dayOf(*date);
    }
}

const QString &PlainTextTaskExporter::dayOf(Date date) const
{
    const auto next = m_days.upper_bound(date);
    if (next != m_days.begin() && date < std::prev(next)->second.end) {
        return std::prev(next)->second.text;
    }
    const QDate day = date.toDateTime().date();
    const auto beginOf = [](QDate one) {
        return Date::fromDateTime(one.startOfDay());
    };
    return m_days
        .insert_or_assign(beginOf(day),
                          Day{beginOf(day.addDays(1)), m_locale.toString(day, QLocale::ShortFormat)})
        .first->second.text;
}

QString PlainTextTaskExporter::exportTasks(const WorkItems &tasks) const
{
    QString text;
    for (const WorkItemPtr &task : tasks) {
        appendLine(*task, text);
        text += u'\n';
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
