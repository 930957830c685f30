#pragma once

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace vantrel {

/**
 * Brings what a view has made into the order in which it is seen. A screen reader goes through the children
 * of an item in their order; a view with recycled delegates has them in the order in which they were made.
 */
class ReadingOrder : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
public:
    /** The children of `parent` by rows from the top, and in a row from the left. They are not to overlap. */
    Q_INVOKABLE static void arrange(QQuickItem *parent);
};

} // namespace vantrel
