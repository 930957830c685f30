#include "viewmodels/CardPopover.h"

#include "board/BoardState.h"
#include "board/TaskBlockingManager.h"
#include "feedback/Announcer.h"

namespace vantrel {

namespace {

CardPopover::Kind kindFor(KanbanCardFocus::Value part)
{
    switch (part) {
    case KanbanCardFocus::NoteIcon:
        return CardPopover::Note;
    case KanbanCardFocus::Icon:
        return CardPopover::Info;
    case KanbanCardFocus::Blocked:
        return CardPopover::BlockReason;
    default:
        return CardPopover::None;
    }
}

bool hasSomethingToTell(const WorkItem &task, CardPopover::Kind kind)
{
    switch (kind) {
    case CardPopover::Note:
        return !task.note().value_or(QString()).isEmpty();
    case CardPopover::Info:
        return true;
    case CardPopover::BlockReason:
        return task.isBlocked();
    case CardPopover::None:
        break;
    }
    return false;
}

} // namespace

CardPopover::CardPopover(BoardState &board, TaskBlockingManager &blocking, const CardPreferences &preferences,
                         Announcer &announcer, QObject *parent)
    : QObject(parent),
      m_board(board),
      m_blocking(blocking),
      m_preferences(preferences),
      m_announcer(announcer)
{
}

QString CardPopover::title() const
{
    switch (m_kind) {
    case Note:
        return tr("Note");
    case Info:
        return cardContent(*m_task, m_preferences.rules()).sourceText;
    case BlockReason:
        return tr("Block Reason");
    case None:
        break;
    }
    return {};
}

QString CardPopover::text() const
{
    if (m_kind == Note) {
        return m_task->note().value_or(QString());
    }
    if (m_kind == BlockReason) {
        return blockReason().isEmpty() ? tr("No reason entered") : blockReason();
    }
    return {};
}

QString CardPopover::hint() const
{
    return m_kind == BlockReason && blockReason().isEmpty()
               ? tr("This task is blocked but no reason is provided")
               : QString();
}

QVariantList CardPopover::facts() const
{
    if (m_kind != Info) {
        return {};
    }
    const auto fact = [](const QString &label, const QString &value) {
        return QVariantMap{{QStringLiteral("label"), label}, {QStringLiteral("value"), value}};
    };
    const QString status = m_task->isComplete()  ? tr("Completed")
                           : m_task->isBlocked() ? tr("Blocked")
                                                 : tr("Open");
    return {fact(tr("Task ID"), m_task->id()), fact(tr("Status"), status)};
}

QString CardPopover::blockReason() const
{
    return m_kind == BlockReason ? m_task->blockReason().value_or(QString()) : QString();
}

bool CardPopover::open(const QString &taskId, KanbanCardFocus::Value part)
{
    const WorkItemPtr task = m_board.task(taskId);
    const Kind kind = kindFor(part);
    if (!task || !hasSomethingToTell(*task, kind)) {
        return false;
    }
    disconnect(m_taskConnection);
    m_task = task;
    m_kind = kind;
    m_part = part;
    m_isEditing = false;
    m_taskConnection = connect(task.get(), &WorkItem::changed, this, &CardPopover::handleTaskChanged);
    Q_EMIT opened();
    Q_EMIT changed();
    return true;
}

void CardPopover::close()
{
    if (m_kind == None) {
        return;
    }
    if (m_kind == BlockReason) m_announcer.announce(tr("Block reason popup closed"));
    m_announcer.announce(tr("Returned to task card"));
    end();
}

void CardPopover::end()
{
    disconnect(m_taskConnection);
    m_kind = None;
    m_isEditing = false;
    m_task.reset();
    Q_EMIT changed();
}

void CardPopover::handleTaskChanged()
{
    if (hasSomethingToTell(*m_task, m_kind)) {
        Q_EMIT changed();
    } else {
        end();
    }
}

void CardPopover::edit()
{
    if (m_kind != BlockReason) {
        return;
    }
    m_isEditing = true;
    Q_EMIT changed();
}

void CardPopover::cancelEditing()
{
    if (!m_isEditing) {
        return;
    }
    m_isEditing = false;
    m_announcer.announce(tr("Editing canceled"));
    Q_EMIT changed();
}

void CardPopover::saveReason(const QString &reason)
{
    if (!m_isEditing) {
        return;
    }
    const QString text = reason.trimmed();
    if (!m_blocking.setBlockReason(*m_task, text.isEmpty() ? std::nullopt : std::optional(text))) {
        return;
    }
    m_isEditing = false;
    m_announcer.announce(text.isEmpty() ? tr("Block reason removed") : tr("Block reason saved"));
    Q_EMIT changed();
}

void CardPopover::unblock()
{
    // The change ends this popover, and with it the hold on the task.
    const WorkItemPtr task = m_task;
    if (m_kind == BlockReason && m_blocking.setBlockedStatus(*task, false, std::nullopt)) {
        m_announcer.announce(tr("Task unblocked successfully"));
    }
}

} // namespace vantrel
