#include "foundations/PlainTextWorkItem.h"

#include "foundations/Pattern.h"

#include <QSet>

namespace vantrel {

PlainTextWorkItem::PlainTextWorkItem(PlainTextRecord record)
    : WorkItem(std::move(record.fields)),
      m_hashtags(std::move(record.hashtags)),
      m_originalText(std::move(record.originalText))
{
}

void PlainTextWorkItem::update(const PlainTextRecord &record)
{
    WorkItem::update(record.fields);
    if (m_hashtags != record.hashtags || m_originalText != record.originalText) {
        m_hashtags = record.hashtags;
        m_originalText = record.originalText;
        noteChange(Property::SourceDetail);
    }
}

QString PlainTextWorkItem::formattedText() const
{
    static const QRegularExpression namedHashtag = compilePattern(u"#(\\w+)");
    QSet<QString> named;
    for (auto matches = namedHashtag.globalMatch(name()); matches.hasNext();) {
        named.insert(matches.next().captured(1));
    }
    QString line = (isComplete() ? u"- [x] " : u"- [ ] ") + name();
    for (const QString &hashtag : m_hashtags) {
        if (!named.contains(hashtag)) {
            line += u" #" + hashtag;
        }
    }
    return line;
}

QString PlainTextWorkItem::debugDescription() const
{
    return u"PlainTextWorkItem(" + describedFields() + u", isComplete: " +
           (isComplete() ? u"true" : u"false") + u", hashtags: [" + m_hashtags.join(u", ") + u"])";
}

} // namespace vantrel
