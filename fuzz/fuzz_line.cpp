// One line of quick entry.

#include "Fuzz.h"

#include "exchange/NaturalLanguageParser.h"
#include "support/ManualClock.h"

#include <algorithm>

using namespace vantrel;
using namespace vantrel::fuzz;

namespace {

/** True if `part` is what is left of `whole` when some of its characters are taken out; blanks do not count.
 */
bool isLeftOf(const QString &whole, const QString &part)
{
    auto at = whole.begin();
    return std::all_of(part.begin(), part.end(), [&](QChar c) {
        if (c.isSpace()) {
            return true;
        }
        at = std::find(at, whole.end(), c);
        return at != whole.end() && at++ != whole.end();
    });
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString line = textOf(data, size);
    const test::ManualClock clock;
    const ParsedTask task = NaturalLanguageParser(clock).parseTask(line);

    requireValid(task.name);
    requireValid(task.project);
    require(task.name == task.name.simplified(), "the name has single blanks");
    require(!line.isValidUtf16() || isLeftOf(line, task.name), "the name is what is left of the line");
    for (const QString &tag : task.tags) {
        requireValid(tag);
        require(!tag.isEmpty(), "a tag has a name");
    }
    for (const std::optional<Date> &date : {task.dueDate, task.deferDate}) {
        require(!date || *date >= clock.now(), "no date has gone by");
    }
    return 0;
}
