#include "foundations/BaseWorkItem.h"

#include "foundations/Ids.h"

namespace vantrel {

BaseWorkItem::BaseWorkItem(WorkItemFields fields, QStringList hashtags, std::optional<QString> originalText)
    : WorkItem(std::move(fields)), m_hashtags(std::move(hashtags)), m_originalText(std::move(originalText))
{
}

QString BaseWorkItem::sourceIdentifier() const
{
    return sourceOf(id()) == TaskSource::PlainText ? QStringLiteral("plaintext") : QStringLiteral("generic");
}

QString BaseWorkItem::debugDescription() const
{
    return u"BaseWorkItem(" + describedFields() + u')';
}

} // namespace vantrel
