#include "platform/qt/QtClipboard.h"

#include <QClipboard>
#include <QGuiApplication>

namespace vantrel {

bool QtClipboard::setText(const QString &text)
{
    QGuiApplication::clipboard()->setText(text, QClipboard::Clipboard);
    // Qt reports no refusal, and a desktop may refuse a window without focus: reading back tells.
    return this->text() == text;
}

QString QtClipboard::text() const
{
    return QGuiApplication::clipboard()->text(QClipboard::Clipboard);
}

} // namespace vantrel
