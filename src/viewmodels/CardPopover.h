#pragma once

#include "foundations/WorkItem.h"
#include "viewmodels/CardPreferences.h"

#include <QObject>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

namespace vantrel {

class Announcer;
class BoardState;
class TaskBlockingManager;

/**
 * What stands beside a card when one of its parts is asked for more: the note, where the task comes from, or
 * why it is blocked, which can be changed there. One at a time. Owned by BoardViewModel; GUI thread.
 */
class CardPopover : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the board")
    Q_PROPERTY(vantrel::CardPopover::Kind kind READ kind NOTIFY changed)
    Q_PROPERTY(vantrel::KanbanCardFocus::Value part READ part NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString text READ text NOTIFY changed)
    Q_PROPERTY(QString hint READ hint NOTIFY changed)
    Q_PROPERTY(QVariantList facts READ facts NOTIFY changed)
    Q_PROPERTY(QString blockReason READ blockReason NOTIFY changed)
    Q_PROPERTY(bool isEditing READ isEditing NOTIFY changed)
public:
    enum Kind { None, Note, Info, BlockReason };
    Q_ENUM(Kind)

    CardPopover(BoardState &board, TaskBlockingManager &blocking, const CardPreferences &preferences,
                Announcer &announcer, QObject *parent = nullptr);

    Kind kind() const { return m_kind; }
    /** The part of the card that it belongs to. */
    KanbanCardFocus::Value part() const { return m_part; }
    QString title() const;
    QString text() const;
    /** What is to be said below the text; may be empty. */
    QString hint() const;
    /** Maps of "label" and "value". */
    QVariantList facts() const;
    QString blockReason() const;
    bool isEditing() const { return m_isEditing; }

    /** Opens what the part of the card has to tell; false, with nothing changed, if that is nothing. */
    Q_INVOKABLE bool open(const QString &taskId, vantrel::KanbanCardFocus::Value part);
    Q_INVOKABLE void close();

    Q_INVOKABLE void edit();
    Q_INVOKABLE void cancelEditing();
    /** Stores the reason; one of blanks counts as none. */
    Q_INVOKABLE void saveReason(const QString &reason);
    Q_INVOKABLE void unblock();

Q_SIGNALS:
    /** It is going to be shown: the place beside the card can be found now. */
    void opened();
    void changed();

private:
    void handleTaskChanged();
    void end();

    BoardState &m_board;
    TaskBlockingManager &m_blocking;
    const CardPreferences &m_preferences;
    Announcer &m_announcer;
    WorkItemPtr m_task;
    Kind m_kind = None;
    KanbanCardFocus::Value m_part = KanbanCardFocus::None;
    bool m_isEditing = false;
    QMetaObject::Connection m_taskConnection;
};

} // namespace vantrel
