#include "persistence/BoardJournal.h"

#include <algorithm>
#include <array>

namespace vantrel {

namespace {
constexpr std::array<QStringView, 5> SubjectRawValues{u"column", u"swimLane", u"completion", u"blocked",
                                                      u"priority"};
}

QString rawValue(JournalSubject subject)
{
    return SubjectRawValues.at(static_cast<std::size_t>(subject)).toString();
}

std::optional<JournalSubject> journalSubjectFromRawValue(QStringView text)
{
    const auto found = std::find(SubjectRawValues.begin(), SubjectRawValues.end(), text);
    return found != SubjectRawValues.end()
               ? std::optional(static_cast<JournalSubject>(found - SubjectRawValues.begin()))
               : std::nullopt;
}

} // namespace vantrel
