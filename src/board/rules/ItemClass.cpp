#include "board/rules/ItemClass.h"

#include "foundations/BaseWorkItem.h"
#include "foundations/OmniFocusTask.h"
#include "foundations/ReminderWorkItem.h"

namespace vantrel {

ItemClass itemClass(const WorkItem &item)
{
    const QMetaObject *type = item.metaObject();
    if (type == &OmniFocusTask::staticMetaObject) return ItemClass::OmniFocus;
    if (type == &ReminderWorkItem::staticMetaObject) return ItemClass::Reminder;
    if (type == &PlainTextWorkItem::staticMetaObject) return ItemClass::PlainText;
    if (type == &BaseWorkItem::staticMetaObject) return ItemClass::Base;
    return ItemClass::Unknown;
}

QString itemClassName(const WorkItem &item)
{
    return QString::fromLatin1(item.metaObject()->className()).section(QStringLiteral("::"), -1);
}

} // namespace vantrel
