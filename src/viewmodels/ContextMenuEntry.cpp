#include "viewmodels/ContextMenuEntry.h"

namespace vantrel {

QVariantList ContextMenuEntry::childList() const
{
    return toVariantList(children);
}

QVariantList toVariantList(const ContextMenuEntries &entries)
{
    QVariantList list;
    for (const ContextMenuEntry &entry : entries) {
        list.append(QVariant::fromValue(entry));
    }
    return list;
}

} // namespace vantrel
