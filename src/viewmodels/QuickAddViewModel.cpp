#include "viewmodels/QuickAddViewModel.h"

#include "feedback/Announcer.h"
#include "foundations/Launch.h"
#include "foundations/NotificationNames.h"
#include "sources/TaskManagerFactory.h"

#include <QPointer>

#include <utility>

namespace vantrel {

QuickAddViewModel::QuickAddViewModel(TaskManagerFactory &managers, NotificationCenter &notifications,
                                     Announcer &announcer, QObject *parent)
    : QObject(parent), m_managers(managers), m_announcer(announcer)
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
    m_lastAdded.clear();
    Q_EMIT stateChanged();
    Q_EMIT openChanged();
    m_announcer.announce(tr("Quick Add Task window opened. Enter your task description."));
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
    if (line.isEmpty()) {
        return;
    }
    if (!m_managers.getTaskSourceConfiguration().isPlainTextEnabled) {
        m_errorMessage = tr("Plain text tasks are disabled in settings");
        Q_EMIT stateChanged();
        m_announcer.announce(m_errorMessage, AnnouncementPriority::High);
        return;
    }
    setText({});
    take({line});
}

void QuickAddViewModel::retry()
{
    take(std::exchange(m_failedLines, {}));
}

void QuickAddViewModel::take(const QStringList &lines)
{
    m_lines += lines;
    m_errorMessage.clear();
    Q_EMIT stateChanged();
    if (!m_isCreating) {
        launch(createTasks(), QStringLiteral("Creating tasks"));
    }
}

QCoro::Task<> QuickAddViewModel::createTasks()
{
    const QPointer<QuickAddViewModel> self(this);
    m_isCreating = true;
    while (self && !m_lines.isEmpty()) {
        co_await createTask(m_lines.takeFirst());
    }
    if (self) {
        m_isCreating = false;
    }
}

QCoro::Task<> QuickAddViewModel::createTask(QString line)
{
    const QPointer<QuickAddViewModel> self(this);
    NewTask task;
    task.name = line;
    QString error;
    try {
        co_await m_managers.manager(TaskManagerType::PlainText).createTask(std::move(task));
    } catch (const std::exception &failure) {
        error = QString::fromUtf8(failure.what());
    }
    if (!self) {
        co_return;
    }
    if (error.isEmpty()) {
        finish(line);
    } else {
        takeBack(line, error);
    }
}

void QuickAddViewModel::finish(const QString &line)
{
    m_lastAdded = line;
    Q_EMIT stateChanged();
    m_announcer.announce(tr("Task '%1' created successfully").arg(line));
}

void QuickAddViewModel::takeBack(const QString &line, const QString &error)
{
    if (m_text.isEmpty()) {
        setText(line);
    } else {
        m_failedLines.append(line);
    }
    m_errorMessage = tr("Error creating task: %1").arg(error);
    Q_EMIT stateChanged();
    m_announcer.announce(m_errorMessage, AnnouncementPriority::High);
}

} // namespace vantrel
