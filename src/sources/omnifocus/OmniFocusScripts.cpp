#include "sources/omnifocus/OmniFocusScripts.h"

#include "foundations/Text.h"

#include <QFile>

#include <algorithm>
#include <utility>

namespace vantrel::omnifocus {

namespace {

using Filling = std::pair<QStringView, QString>;

QString scriptText(QStringView name)
{
    QFile file(u":/applescript/" + name + u".applescript");
    const bool isOpen = file.open(QIODevice::ReadOnly);
    Q_ASSERT_X(isOpen, "scriptText", "a script is missing from the resources");
    return QString::fromUtf8(file.readAll());
}

/**
 * Replaces each "{place}" by its value, in one pass, so that what is put in is never searched for places
 * itself. Braces that name no place are the script's own.
 */
QString filled(QStringView script, const std::vector<Filling> &fillings)
{
    QString result;
    qsizetype position = 0;
    while (position < script.size()) {
        const QStringView rest = script.sliced(position);
        const auto place = std::find_if(fillings.begin(), fillings.end(), [rest](const Filling &filling) {
            return rest.startsWith(u'{') && rest.sliced(1).startsWith(filling.first) &&
                   rest.sliced(1 + filling.first.size()).startsWith(u'}');
        });
        if (place == fillings.end()) {
            result += rest.front();
            ++position;
        } else {
            result += place->second;
            position += place->first.size() + 2;
        }
    }
    return result;
}

QString filledScript(QStringView name, const std::vector<Filling> &fillings = {})
{
    return filled(scriptText(name), fillings);
}

QString wrapped(QString body)
{
    while (body.endsWith(u'\n')) {
        body.chop(1);
    }
    const std::vector<Filling> fillings{{u"omniFocusBundleID", BundleId.toString()}, {u"body", body}};
    return filledScript(u"wrapper", fillings);
}

QString escaped(const QString &text)
{
    QString result = text;
    result.replace(u'\\', QStringLiteral("\\\\"));
    result.replace(u'"', QStringLiteral("\\\""));
    result.replace(u'\n', QStringLiteral("\\n"));
    result.replace(u'\r', QStringLiteral("\\r"));
    result.replace(u'\t', QStringLiteral("\\t"));
    return result;
}

QString tagListLiteral(const QStringList &tags)
{
    if (tags.isEmpty()) {
        return QStringLiteral("\"\"");
    }
    QStringList quoted;
    for (const QString &tag : tags) {
        quoted.append(u'"' + escaped(tag) + u'"');
    }
    return u'{' + quoted.join(u", ") + u'}';
}

/** The lines that build `date` in the variable `variable`, part by part: a date literal would depend on the
 * locale. */
QString dateLines(const QString &variable, const std::optional<Date> &date)
{
    if (!date) {
        return u"set " + variable + u" to missing value";
    }
    const QDateTime moment = date->toDateTime();
    const auto line = [&variable](QStringView part, int value) {
        return QString(u"set " + part + u" of " + variable + u" to " + QString::number(value));
    };
    const QStringList lines{
        u"set " + variable + u" to (current date)", line(u"year", moment.date().year()),
        line(u"month", moment.date().month()),      line(u"day", moment.date().day()),
        line(u"hours", moment.time().hour()),       line(u"minutes", moment.time().minute()),
        line(u"seconds", moment.time().second())};
    return lines.join(u'\n');
}

} // namespace

QString permissionCheckScript()
{
    return filledScript(u"permission-check", {{u"omniFocusBundleID", BundleId.toString()}});
}

QString fetchTasksScript(double retrievalDays)
{
    return filledScript(u"fetch-tasks", {{u"retrievalDays", realText(retrievalDays)}});
}

QString fetchCompletedTasksScript(int lookbackDays)
{
    return filledScript(u"fetch-completed-tasks", {{u"lookbackDays", QString::number(lookbackDays)}});
}

QString fetchProjectsScript()
{
    return wrapped(scriptText(u"fetch-projects"));
}

QString fetchTagsScript()
{
    return wrapped(scriptText(u"fetch-tags"));
}

QString fetchDueSoonScript()
{
    return scriptText(u"fetch-due-soon");
}

QString setTaskNameScript(const QString &taskId, const QString &name)
{
    return wrapped(filledScript(u"set-task-name", {{u"taskID", taskId}, {u"name", name}}));
}

QString flagTaskScript(const QString &taskId, bool flagged)
{
    const QString value = flagged ? QStringLiteral("true") : QStringLiteral("false");
    return wrapped(filledScript(u"flag-task", {{u"taskID", taskId}, {u"true or false", value}}));
}

QString markCompleteScript(const QString &taskId)
{
    return wrapped(filledScript(u"mark-complete", {{u"taskID", taskId}}));
}

QString markIncompleteScript(const QString &taskId)
{
    return wrapped(filledScript(u"mark-incomplete", {{u"taskID", taskId}}));
}

QString createTaskScript(const NewTask &task)
{
    return filledScript(u"create-task",
                        {{u"name", escaped(task.name)},
                         {u"project", escaped(task.project.value_or(QString()))},
                         {u"tagList", tagListLiteral(task.tags)},
                         {u"dueDateLines", dateLines(QStringLiteral("dueDate"), task.dueDate)},
                         {u"deferDateLines", dateLines(QStringLiteral("deferDate"), task.deferDate)},
                         {u"omniFocusBundleID", BundleId.toString()}});
}

bool isSafeTaskId(QStringView taskId)
{
    constexpr qsizetype longest = 64;
    return !taskId.isEmpty() && taskId.size() <= longest &&
           std::all_of(taskId.begin(), taskId.end(), [](QChar c) {
               const bool isLetterOrDigit = c.unicode() < 128 && c.isLetterOrNumber();
               return isLetterOrDigit || c == u'_' || c == u'.' || c == u'-';
           });
}

bool isSafeTaskName(QStringView name)
{
    qsizetype backslashes = 0;
    while (backslashes < name.size() && name.at(name.size() - 1 - backslashes) == u'\\') {
        ++backslashes;
    }
    return !name.contains(u'"') && backslashes % 2 == 0;
}

} // namespace vantrel::omnifocus
