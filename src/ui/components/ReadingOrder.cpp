#include "ui/components/ReadingOrder.h"

#include <QAccessible>

#include <algorithm>

namespace vantrel {

namespace {

bool isReadBefore(const QQuickItem *one, const QQuickItem *other)
{
    return one->y() != other->y() ? one->y() < other->y() : one->x() < other->x();
}

} // namespace

void ReadingOrder::arrange(QQuickItem *parent)
{
    QList<QQuickItem *> children = parent ? parent->childItems() : QList<QQuickItem *>();
    if (std::is_sorted(children.cbegin(), children.cend(), isReadBefore)) {
        return;
    }
    std::stable_sort(children.begin(), children.end(), isReadBefore);
    for (int i = 1; i < children.size(); ++i) {
        children[i]->stackAfter(children[i - 1]);
    }
    if (QAccessible::isActive()) {
        QAccessibleEvent event(parent, QAccessible::ObjectReorder);
        QAccessible::updateAccessibility(&event);
    }
}

} // namespace vantrel
