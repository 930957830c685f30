#pragma once

#include "foundations/PlainTextWorkItem.h"

namespace vantrel {

/** The generic item: a task of no particular source, and the sample tasks of the testing environment. */
class BaseWorkItem final : public WorkItem
{
    Q_OBJECT
public:
    explicit BaseWorkItem(WorkItemFields fields, QStringList hashtags = {},
                          std::optional<QString> originalText = {});

    const QStringList &hashtags() const { return m_hashtags; }
    const std::optional<QString> &originalText() const { return m_originalText; }

    /** "plaintext" for an id of the plain text source, else "generic". */
    QString sourceIdentifier() const;

    QString debugDescription() const override;

private:
    QStringList m_hashtags;
    std::optional<QString> m_originalText;
};

} // namespace vantrel
