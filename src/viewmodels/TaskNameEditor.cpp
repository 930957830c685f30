#include "viewmodels/TaskNameEditor.h"

#include "board/BoardState.h"
#include "foundations/Launch.h"
#include "foundations/Log.h"
#include "sources/SourceError.h"

#include <QPointer>

namespace vantrel {

TaskNameEditor::TaskNameEditor(BoardState &board, QObject *parent) : QObject(parent), m_board(board)
{
    connect(&m_board, &BoardState::changed, this, &TaskNameEditor::handleBoardChanged);
}

void TaskNameEditor::begin(const QString &taskId)
{
    const WorkItemPtr task = m_board.task(taskId);
    if (task && !m_isSaving && taskId != m_taskId) {
        edit(taskId, task->name());
    }
}

void TaskNameEditor::commit()
{
    const WorkItemPtr task = m_board.task(m_taskId);
    const QString name = m_text.trimmed();
    if (!task || m_isSaving || name.isEmpty()) {
        return;
    }
    if (name == task->name()) {
        edit({}, {});
        return;
    }
    setSaving(true);
    launch(rename(task, name), QStringLiteral("Renaming a task"));
}

void TaskNameEditor::cancel()
{
    if (!m_isSaving) {
        edit({}, {});
    }
}

void TaskNameEditor::dismissAlert()
{
    setAlertMessage({});
}

QCoro::Task<> TaskNameEditor::rename(WorkItemPtr task, QString name)
{
    const QPointer<TaskNameEditor> self(this);
    QString error;
    try {
        TaskManagerProtocol &source = m_board.getTaskManager(*task);
        if (!co_await source.setTaskName(task->id(), name)) {
            error = tr("The task could not be found where it comes from. Refresh the board and try again.");
        }
    } catch (const TaskManagerError &) {
        error = tr("No task manager available for this task");
    } catch (const std::exception &failure) {
        error = QString::fromUtf8(failure.what());
    }
    if (!self) {
        co_return;
    }
    setSaving(false);
    if (!error.isEmpty()) {
        log::error(u"Error renaming task " + task->name() + u": " + error);
        setAlertMessage(error);
        co_return;
    }
    m_board.updateTaskName(task->id(), name);
    edit({}, {});
}

void TaskNameEditor::edit(const QString &taskId, const QString &text)
{
    if (taskId == m_taskId) {
        return;
    }
    m_taskId = taskId;
    m_text = text;
    Q_EMIT textChanged();
    Q_EMIT taskChanged();
}

void TaskNameEditor::setSaving(bool isSaving)
{
    m_isSaving = isSaving;
    Q_EMIT savingChanged();
}

void TaskNameEditor::setAlertMessage(const QString &message)
{
    if (message == m_alertMessage) {
        return;
    }
    m_alertMessage = message;
    Q_EMIT alertChanged();
}

/** What has left the board can no longer be renamed there. */
void TaskNameEditor::handleBoardChanged()
{
    if (!m_taskId.isEmpty() && !m_isSaving && !m_board.task(m_taskId)) {
        edit({}, {});
    }
}

} // namespace vantrel
