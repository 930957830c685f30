#include "viewmodels/TaskExportViewModel.h"

#include "board/BoardState.h"
#include "feedback/Announcer.h"
#include "feedback/DesktopPorts.h"
#include "feedback/ToastManager.h"
#include "foundations/NotificationNames.h"
#include "sources/TaskManagerFactory.h"

#include <algorithm>

namespace vantrel {

namespace {

using ToastStyle = ToastManager::ToastStyle;

template <typename Records>
QStringList namesOf(const Records &records)
{
    QStringList names;
    for (const auto &record : records) {
        names.append(record.name);
    }
    return names;
}

template <typename Records, typename Id>
int indexOf(const Records &records, const std::optional<Id> &id)
{
    const auto found = std::find_if(records.begin(), records.end(),
                                    [&id](const auto &record) { return id && record.id == *id; });
    return found == records.end() ? -1 : static_cast<int>(found - records.begin());
}

} // namespace

TaskExportViewModel::TaskExportViewModel(const ExchangeServices &services, QObject *parent)
    : QObject(parent), m_services(services)
{
    using namespace notifications;
    const auto observe = [&](NotificationName name, void (TaskExportViewModel::*handle)()) {
        services.notifications.observe(name, this,
                                       [this, handle](const Notification &) { (this->*handle)(); });
    };
    observe(ShowTaskExportView, &TaskExportViewModel::show);
    observe(QuickExportPlainTextTasks, &TaskExportViewModel::quickExportPlainTextTasks);
    observe(QuickExportVisibleTasks, &TaskExportViewModel::quickExportVisibleTasks);
    observe(TaskSourceAvailabilityChanged, &TaskExportViewModel::refresh);
    connect(&services.board, &BoardState::changed, this, &TaskExportViewModel::refresh);
}

bool TaskExportViewModel::isPlainTextEnabled() const
{
    return m_services.managers.getTaskSourceConfiguration().isPlainTextEnabled;
}

std::vector<ExportScope> TaskExportViewModel::availableScopes() const
{
    std::vector<ExportScope> scopes(AllExportScopes.begin(), AllExportScopes.end());
    if (!isPlainTextEnabled()) {
        std::erase(scopes, ExportScope::PlainTextTasks);
    }
    if (m_services.board.selectionManager().selectedTaskIds().isEmpty()) {
        std::erase(scopes, ExportScope::SelectedTasks);
    }
    return scopes;
}

QStringList TaskExportViewModel::scopes() const
{
    QStringList labels;
    for (const ExportScope scope : availableScopes()) {
        labels.append(tr(rawValue(scope).toUtf8().constData()));
    }
    return labels;
}

int TaskExportViewModel::selectedScope() const
{
    const std::vector<ExportScope> scopes = availableScopes();
    return static_cast<int>(std::find(scopes.begin(), scopes.end(), m_scope) - scopes.begin());
}

QStringList TaskExportViewModel::formats() const
{
    QStringList labels;
    for (const ExportFormat format : AllExportFormats) {
        labels.append(tr(rawValue(format).toUtf8().constData()));
    }
    return labels;
}

QStringList TaskExportViewModel::columns() const
{
    return namesOf(m_services.board.columnManager().columns());
}

int TaskExportViewModel::selectedColumn() const
{
    return indexOf(m_services.board.columnManager().columns(), m_selectedColumnId);
}

QStringList TaskExportViewModel::swimLanes() const
{
    return namesOf(m_services.board.swimLaneManager().swimLanes());
}

int TaskExportViewModel::selectedSwimLane() const
{
    return indexOf(m_services.board.swimLaneManager().swimLanes(), m_selectedSwimLaneId);
}

QStringList TaskExportViewModel::previewLines() const
{
    return m_exportText.isEmpty() ? QStringList(tr("No tasks to export")) : m_exportText.split(u'\n');
}

void TaskExportViewModel::show()
{
    if (!m_isOpen) {
        m_isOpen = true;
        m_showSuccess = false;
        m_errorMessage.clear();
        refresh();
        Q_EMIT openChanged();
    }
}

void TaskExportViewModel::close()
{
    if (m_isOpen) {
        m_isOpen = false;
        m_exportText.clear();
        Q_EMIT openChanged();
    }
}

void TaskExportViewModel::selectScope(int index)
{
    m_scope = availableScopes().at(static_cast<std::size_t>(index));
    refresh();
}

void TaskExportViewModel::selectFormat(int index)
{
    m_format = AllExportFormats.at(static_cast<std::size_t>(index));
    refresh();
}

void TaskExportViewModel::selectColumn(int index)
{
    m_selectedColumnId = m_services.board.columnManager().columns().at(static_cast<std::size_t>(index)).id;
    refresh();
}

void TaskExportViewModel::selectSwimLane(int index)
{
    m_selectedSwimLaneId =
        m_services.board.swimLaneManager().swimLanes().at(static_cast<std::size_t>(index)).id;
    refresh();
}

void TaskExportViewModel::refresh()
{
    if (!m_isOpen) {
        return;
    }
    const std::vector<ExportScope> scopes = availableScopes();
    if (std::find(scopes.begin(), scopes.end(), m_scope) == scopes.end()) {
        m_scope = ExportScope::AllTasks;
    }
    m_exportText = m_services.board.exportText(m_scope, m_format, m_selectedColumnId, m_selectedSwimLaneId);
    Q_EMIT changed();
}

void TaskExportViewModel::copyToClipboard()
{
    m_showSuccess = hasText() && m_services.clipboard.setText(m_exportText);
    m_errorMessage = m_showSuccess || !hasText()
                         ? QString()
                         : tr("The clipboard did not take the text. Please try again.");
    Q_EMIT changed();
    if (m_showSuccess) {
        m_services.announcer.announce(tr("Copied to Clipboard"));
    } else if (!m_errorMessage.isEmpty()) {
        m_services.announcer.announce(m_errorMessage, AnnouncementPriority::High);
    }
}

void TaskExportViewModel::acknowledge()
{
    m_showSuccess = false;
    Q_EMIT changed();
}

void TaskExportViewModel::quickExportPlainTextTasks()
{
    if (!isPlainTextEnabled()) {
        m_services.toasts.show(tr("Plain text tasks are disabled in settings"), ToastStyle::Warning);
        return;
    }
    const ExportResult result = m_services.board.quickExportPlainTextTasks();
    tellOfExport(result.count, result.success, tr("Exported %1 plain text tasks to clipboard"),
                 tr("No plain text tasks to export"));
}

void TaskExportViewModel::quickExportVisibleTasks()
{
    const ExportResult result = m_services.board.exportTasksToClipboard(ExportScope::VisibleTasks,
                                                                        ExportFormat::PlainCheckbox, {}, {});
    tellOfExport(result.count, result.success, tr("Exported %1 tasks to clipboard"),
                 tr("No tasks to export"));
}

void TaskExportViewModel::tellOfExport(int count, bool isSuccess, const QString &success,
                                       const QString &nothing)
{
    if (isSuccess) {
        ToastManager::Options options;
        options.announceToVoiceOver = false;
        m_services.toasts.show(success.arg(count), ToastStyle::Success, options);
    } else if (count == 0) {
        m_services.announcer.announce(nothing);
    } else {
        m_services.toasts.show(tr("The clipboard did not take the text. Please try again."),
                               ToastStyle::Error);
    }
}

} // namespace vantrel
