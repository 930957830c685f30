#pragma once

#include <QString>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <vector>

namespace vantrel {

/** One line of a context menu: something to do, the way into a menu within, a heading, or what divides
 * groups. A value. */
struct ContextMenuEntry
{
    Q_GADGET
    QML_VALUE_TYPE(contextMenuEntry)
    Q_PROPERTY(QString title MEMBER title CONSTANT)
    Q_PROPERTY(QString symbol MEMBER symbol CONSTANT)
    Q_PROPERTY(QString help MEMBER help CONSTANT)
    Q_PROPERTY(QString keys MEMBER keys CONSTANT)
    Q_PROPERTY(bool isEnabled MEMBER isEnabled CONSTANT)
    Q_PROPERTY(bool isChecked MEMBER isChecked CONSTANT)
    Q_PROPERTY(bool isSeparator READ isSeparator CONSTANT)
    Q_PROPERTY(bool isHeading MEMBER isHeading CONSTANT)
    Q_PROPERTY(int number MEMBER number CONSTANT)
    Q_PROPERTY(QVariantList children READ childList CONSTANT)

public:
    /** Empty for what divides groups. */
    QString title;
    QString symbol = {};
    std::function<void()> action = {};
    /** What a screen reader says besides the title. */
    QString help = {};
    /** The key that does the same. */
    QString keys = {};
    bool isEnabled = true;
    bool isChecked = false;
    bool isHeading = false;
    /** By which the menu is asked for the action. */
    int number = -1;
    std::vector<ContextMenuEntry> children = {};

    bool isSeparator() const { return title.isEmpty(); }
    QVariantList childList() const;
};

using ContextMenuEntries = std::vector<ContextMenuEntry>;

/** As QML takes them. */
QVariantList toVariantList(const ContextMenuEntries &entries);

} // namespace vantrel
