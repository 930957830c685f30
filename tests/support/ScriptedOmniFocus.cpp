#include "support/ScriptedOmniFocus.h"

#include <algorithm>

namespace vantrel::test {

namespace {

ScriptOutcome textAnswer(const QString &text)
{
    ScriptOutcome outcome;
    outcome.text = text;
    return outcome;
}

ScriptOutcome listAnswer(const QStringList &lines)
{
    ScriptOutcome outcome;
    for (const QString &line : lines) {
        outcome.items.emplace_back(line);
    }
    return outcome;
}

/** The first group of `pattern` in `source`, an AppleScript quoted text read back. */
QString quoted(const QString &source, const QString &pattern)
{
    const QRegularExpressionMatch match =
        QRegularExpression(pattern + QStringLiteral("\"((?:[^\"\\\\]|\\\\.)*)\"")).match(source);
    QString text = match.captured(1);
    text.replace(QStringLiteral("\\n"), QStringLiteral("\n"))
        .replace(QStringLiteral("\\t"), QStringLiteral("\t"));
    return text.replace(QStringLiteral("\\\""), QStringLiteral("\""))
        .replace(QStringLiteral("\\\\"), QStringLiteral("\\"));
}

/** What a compiler would refuse first: a quoted text, which may have several lines, without its end. */
bool hasUnbalancedQuotes(QString source)
{
    source.remove(QStringLiteral("\\\\")).remove(QStringLiteral("\\\""));
    return source.count(u'"') % 2 != 0;
}

} // namespace

ScriptedOmniFocus::Task *ScriptedOmniFocus::find(const QString &id)
{
    const auto found =
        std::find_if(tasks.begin(), tasks.end(), [&id](const Task &task) { return task.id == id; });
    return found != tasks.end() ? &*found : nullptr;
}

ScriptOutcome ScriptedOmniFocus::run(const QString &source)
{
    scripts.append(source);
    ScriptOutcome outcome;
    if (hasUnbalancedQuotes(source)) {
        outcome.isCompiled = false;
    } else if (failure) {
        outcome.failure = failure;
    } else {
        outcome = answerTo(source);
    }
    return outcome;
}

ScriptOutcome ScriptedOmniFocus::answerTo(const QString &source)
{
    const auto catalogue = [](const QStringList &names) {
        QStringList lines;
        for (const QString &name : names) {
            lines.append(name + u"|||id-" + name);
        }
        return listAnswer(lines);
    };
    if (source.contains(u"PermissionCheckOK")) return textAnswer(QStringLiteral("PermissionCheckOK"));
    if (source.contains(u"DueSoonInterval")) return textAnswer(dueSoon);
    if (source.contains(u"flattened projects\n")) return catalogue(projects);
    if (source.contains(u"flattened tags\n")) return catalogue(tags);
    if (source.contains(u"set taskName to ")) return create(source);
    const bool isActiveFetch = source.contains(u"& isRepeating");
    if (isActiveFetch || source.contains(u"completedTasks")) {
        QStringList lines;
        for (const Task &task : tasks) {
            if (isActiveFetch != !task.completed.isEmpty()) lines.append(record(task, isActiveFetch));
        }
        return listAnswer(lines);
    }
    return edit(source);
}

ScriptOutcome ScriptedOmniFocus::edit(const QString &source)
{
    const QString id = quoted(source, QStringLiteral("to task id "));
    Task *task = find(id);
    if (!task) {
        return textAnswer(u"ERROR: OmniFocus got an error: Can't get task id \"" + id + u"\".");
    }
    if (source.contains(u"set name of theTask"))
        task->name = quoted(source, QStringLiteral("set name of theTask to "));
    if (source.contains(u"set flagged of theTask to true")) task->isFlagged = true;
    if (source.contains(u"set flagged of theTask to false")) task->isFlagged = false;
    if (source.contains(u"mark complete "))
        task->completed = QStringLiteral("Monday, 2 November 2026 at 09:00:00");
    if (source.contains(u"mark incomplete ")) task->completed.clear();
    return textAnswer(QStringLiteral("Successfully done"));
}

ScriptOutcome ScriptedOmniFocus::create(const QString &source)
{
    Task task;
    task.id = u"made" + QString::number(tasks.size());
    task.name = quoted(source, QStringLiteral("set taskName to "));
    task.projectName = quoted(source, QStringLiteral("set projectName to "));
    task.tagName = quoted(source, QStringLiteral("set tagName to \\{?"));
    if (!task.projectName.isEmpty() && !projects.contains(task.projectName)) {
        return textAnswer(QStringLiteral("ERROR: Can't get project."));
    }
    tasks.push_back(task);
    return textAnswer(task.id);
}

QString ScriptedOmniFocus::record(const Task &task, bool isActiveFetch) const
{
    const auto id = [](const QString &name) {
        return name.isEmpty() ? QString() : QString(u"id-" + name);
    };
    const auto truth = [](bool value) {
        return value ? QStringLiteral("true") : QStringLiteral("false");
    };
    QStringList fields{task.id,
                       task.name,
                       task.note,
                       task.due,
                       task.completed,
                       task.created,
                       task.created,
                       truth(task.isFlagged),
                       id(task.projectName),
                       task.projectName,
                       id(task.tagName),
                       task.tagName,
                       truth(!task.completed.isEmpty()),
                       task.deferred,
                       task.inferred};
    if (isActiveFetch) fields.append(truth(task.isRepeating));
    return fields.join(u"|||");
}

} // namespace vantrel::test
