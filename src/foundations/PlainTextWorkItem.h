#pragma once

#include "foundations/WorkItem.h"

namespace vantrel {

/** A plain text task as the store keeps it: a record that may cross threads. */
struct PlainTextRecord
{
    WorkItemFields fields;
    /** Without "#", in the order of the text. */
    QStringList hashtags;
    /** The line as the user entered it. */
    std::optional<QString> originalText;

    friend bool operator==(const PlainTextRecord &, const PlainTextRecord &) = default;
};

/** A task of the application's own source. */
class PlainTextWorkItem final : public WorkItem
{
    Q_OBJECT
public:
    explicit PlainTextWorkItem(PlainTextRecord record);

    const QStringList &hashtags() const { return m_hashtags; }
    const std::optional<QString> &originalText() const { return m_originalText; }

    PlainTextRecord record() const { return {fields(), m_hashtags, m_originalText}; }
    /** Takes over everything but the id. */
    void update(const PlainTextRecord &record);

    /** "- [x] " or "- [ ] ", the text, then the hashtags that the text does not name. */
    QString formattedText() const;

    QString debugDescription() const override;

private:
    QStringList m_hashtags;
    std::optional<QString> m_originalText;
};

} // namespace vantrel
