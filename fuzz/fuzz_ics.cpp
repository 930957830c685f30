// A file of reminders that another program has written, read and edited.

#include "Fuzz.h"

#include "sources/reminders/vdir/IcsTodos.h"
#include "sources/reminders/vdir/ReminderCodec.h"

#include <QSet>

#include <algorithm>
#include <functional>

using namespace vantrel;
using namespace vantrel::fuzz;
using namespace Qt::StringLiterals;

namespace {

const QString FallbackId = u"file"_s;
const Date Now = Date(815302800.0);

/** The content lines, folds and line ends included. */
QByteArrayList contentLines(const QByteArray &text)
{
    QByteArrayList lines;
    for (const QByteArray &line : text.split('\n')) {
        const bool isFold = line.startsWith(' ') || line.startsWith('\t');
        if (isFold && !lines.isEmpty()) {
            lines.back() += '\n' + line;
        } else {
            lines.append(line);
        }
    }
    return lines;
}

QByteArray unfolded(QByteArray line)
{
    for (const char *fold : {"\r\n ", "\r\n\t", "\n ", "\n\t"}) {
        line.replace(fold, "");
    }
    return line;
}

/** "SUMMARY" of "summary;LANGUAGE=en:Milk". */
QByteArray propertyOf(const QByteArray &folded)
{
    const QByteArray line = unfolded(folded);
    const auto end = std::find_if(line.begin(), line.end(), [](char c) { return c == ':' || c == ';'; });
    return end == line.end() ? QByteArray() : line.left(end - line.begin()).trimmed().toUpper();
}

/** The text in pieces: each task with all that is in it, and what stands between the tasks. */
std::vector<QByteArrayList> pieces(const QByteArray &text)
{
    std::vector<QByteArrayList> result(1);
    int depth = 0;
    for (const QByteArray &line : contentLines(text)) {
        const QByteArray property = propertyOf(line);
        const bool isTask = unfolded(line).toUpper().contains("VTODO");
        if (property == "BEGIN" && (depth > 0 || isTask) && depth++ == 0) {
            result.emplace_back();
        }
        result.back().append(line);
        if (property == "END" && depth > 0 && --depth == 0) {
            result.emplace_back();
        }
    }
    return result;
}

/** The lines of a task that an edit of these properties must leave alone; those of its parts all are. */
QByteArrayList untouched(const QByteArrayList &task, const QSet<QByteArray> &edited)
{
    QByteArrayList lines;
    int depth = 0;
    for (const QByteArray &line : task) {
        const QByteArray property = propertyOf(line);
        depth += property == "BEGIN" ? 1 : property == "END" ? -1 : 0;
        if (depth != 1 || !edited.contains(property)) {
            lines.append(line);
        }
    }
    return lines;
}

struct Change
{
    QSet<QByteArray> properties;
    std::function<void(Reminder &)> make;
};

const std::vector<Change> &changes()
{
    static const std::vector<Change> all{
        {{"SUMMARY"},
         [](Reminder &one) {
             one.title = u"Ünlike; any, other\\ 🎉"_s;
         }},
        {{"DESCRIPTION"},
         [](Reminder &one) {
             one.notes = u"First\nsecond "_s.repeated(20) + u'.';
         }},
        {{"DESCRIPTION", "SUMMARY"},
         [](Reminder &one) {
             one.title = one.notes = std::nullopt;
         }},
        {{"DUE"},
         [](Reminder &one) {
             one.dueDate = QDate(2026, 12, 24);
         }},
        {{"DUE"},
         [](Reminder &one) {
             one.dueDate = Now;
         }},
        {{"PRIORITY"},
         [](Reminder &one) {
             one.priority = one.priority == 1 ? 0 : 1;
         }},
        {{"STATUS", "COMPLETED", "PERCENT-COMPLETE"},
         [](Reminder &one) {
             one.isCompleted = !one.isCompleted;
         }},
    };
    return all;
}

void checkBytes(const QByteArray &before, const QByteArray &after, const QSet<QByteArray> &properties)
{
    const std::vector<QByteArrayList> old = pieces(before);
    const std::vector<QByteArrayList> now = pieces(after);
    require(old.size() == now.size(), "an edit adds no task and takes none away");
    QSet<QByteArray> edited{"DTSTAMP", "LAST-MODIFIED", "SEQUENCE"};
    edited += properties;
    int differing = 0;
    for (std::size_t i = 0; i < old.size(); ++i) {
        if (old[i] != now[i]) {
            ++differing;
            require(untouched(old[i], edited) == untouched(now[i], edited), "an edit keeps all other lines");
        }
    }
    require(differing == 1, "an edit changes one task");
}

void checkEdit(const QByteArray &text, const Reminder &before, const Change &change)
{
    Reminder wanted = before;
    change.make(wanted);
    const IcsEdit edit = IcsTodos::edit(text, FallbackId, before, wanted, Now);
    if (!edit.refusal.isEmpty()) {
        return;
    }
    const auto after = IcsTodos::read(edit.text, FallbackId);
    require(after && std::any_of(after->begin(), after->end(),
                                 [&](const Reminder &one) { return one.identifier == before.identifier; }),
            "an edited file is read again");
    if (edit.completedText.isEmpty()) {
        // A completion brings other occurrences forward, too.
        if (wanted.isCompleted == before.isCompleted) {
            checkBytes(text, edit.text, change.properties);
        }
        return;
    }
    const auto completed = IcsTodos::read(edit.completedText, FallbackId);
    require(completed && completed->size() == 1 && completed->front().isCompleted,
            "a completed occurrence is a file of its own");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray text = bytesOf(data, size);
    const auto reminders = IcsTodos::read(text, FallbackId);
    if (!reminders) {
        return 0;
    }
    require(decodeReminders(encodeReminders(*reminders)) == reminders, "the cache keeps what was read");
    for (const Reminder &reminder : *reminders) {
        requireValid(reminder.identifier);
        requireValid(reminder.title);
        requireValid(reminder.notes);
    }
    if (!reminders->empty()) {
        // One edit for each input is faster than all; the same one for the same input.
        const std::size_t choice = qChecksum(text);
        checkEdit(text, reminders->at(choice % reminders->size()), changes().at(choice % changes().size()));
    }
    return 0;
}
