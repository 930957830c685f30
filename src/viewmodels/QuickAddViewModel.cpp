#include "viewmodels/QuickAddViewModel.h"

#include "feedback/Announcer.h"
#include "foundations/Launch.h"
#include "foundations/NotificationNames.h"
#include "sources/TaskManagerProtocol.h"

#include <QPointer>

namespace vantrel {

QuickAddViewModel::QuickAddViewModel(TaskManagerProtocol &plainText, NotificationCenter &notifications,
                                     Announcer &announcer, QObject *parent)
    : QObject(parent), m_plainText(plainText), m_announcer(announcer)
{
    notifications.observe(notifications::ShowQuickTaskEntry, this, [this](const Notification &) { show(); });
}

void QuickAddViewModel::setText(const QString &text)
{
    if (m_text != text) {
        m_text = text;
        Q_EMIT textChanged();
    }
}

void QuickAddViewModel::show()
{
    if (m_isOpen) {
        return;
    }
    m_isOpen = true;
    m_errorMessage.clear();
    m_lastAdded.clear();
    Q_EMIT stateChanged();
    Q_EMIT openChanged();
    m_announcer.announce(tr("Quick Add Task window opened."));
}

void QuickAddViewModel::close()
{
    if (m_isOpen) {
        m_isOpen = false;
        Q_EMIT openChanged();
    }
}

void QuickAddViewModel::submit()
{
    const QString line = m_text.trimmed();
    if (line.isEmpty() || m_isCreating) {
        return;
    }
    m_isCreating = true;
    m_errorMessage.clear();
    Q_EMIT stateChanged();
    const QPointer<QuickAddViewModel> self(this);
    launch(create(line), QStringLiteral("Creating a task"), [self, line](const QString &message) {
        if (self) {
            self->finish(line, tr("Error creating task: %1").arg(message));
        }
    });
}

QCoro::Task<> QuickAddViewModel::create(QString line)
{
    const QPointer<QuickAddViewModel> self(this);
    NewTask task;
    task.name = line;
    co_await m_plainText.createTask(task);
    if (self) {
        finish(line, {});
    }
}

void QuickAddViewModel::finish(const QString &line, const QString &error)
{
    m_isCreating = false;
    m_errorMessage = error;
    if (error.isEmpty()) {
        m_lastAdded = line;
        // What was typed meanwhile stays.
        if (m_text.trimmed() == line) {
            setText({});
        }
        m_announcer.announce(tr("Task '%1' created successfully").arg(line));
    } else {
        m_announcer.announce(error, AnnouncementPriority::High);
    }
    Q_EMIT stateChanged();
}

} // namespace vantrel
