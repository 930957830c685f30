#include "foundations/Ids.h"

#include <algorithm>

namespace vantrel {

namespace {
bool isHexDigit(QChar c)
{
    return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
}
} // namespace

std::optional<QUuid> uuidFromText(QStringView text)
{
    constexpr QStringView shape = u"xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
    const bool fits =
        std::equal(text.begin(), text.end(), shape.begin(), shape.end(),
                   [](QChar c, QChar place) { return place == u'-' ? c == u'-' : isHexDigit(c); });
    return fits ? std::optional(QUuid::fromString(text)) : std::nullopt;
}

TaskSource sourceOf(QStringView taskId)
{
    if (taskId.startsWith(PlainTextIdPrefix)) return TaskSource::PlainText;
    if (taskId.startsWith(ReminderIdPrefix)) return TaskSource::Reminders;
    if (taskId.startsWith(MockIdPrefix)) return TaskSource::Mock;
    return TaskSource::OmniFocus;
}

} // namespace vantrel
