#include "viewmodels/TaskImportViewModel.h"

#include "board/BoardState.h"
#include "feedback/Announcer.h"
#include "feedback/DesktopPorts.h"
#include "feedback/ToastManager.h"
#include "foundations/Launch.h"
#include "foundations/NotificationNames.h"
#include "sources/TaskManagerFactory.h"

#include <QPointer>
#include <QSet>
#include <QVariantMap>

#include <algorithm>

namespace vantrel {

namespace {

/** The id behind the first entry, which stands for no choice. */
template <typename Records>
auto chosenId(const Records &records, int index)
{
    using Id = decltype(records.front().id);
    const auto place = static_cast<std::size_t>(index);
    return index > 0 && place <= records.size() ? std::optional<Id>(records[place - 1].id) : std::nullopt;
}

} // namespace

TaskImportViewModel::TaskImportViewModel(const ExchangeServices &services, QObject *parent)
    : QObject(parent), m_services(services)
{
    services.notifications.observe(notifications::ShowTaskImportView, this,
                                   [this](const Notification &) { show(); });
}

void TaskImportViewModel::show()
{
    if (m_isOpen) {
        return;
    }
    if (!m_services.managers.getTaskSourceConfiguration().isPlainTextEnabled) {
        m_services.toasts.show(tr("Plain text tasks are disabled in settings"),
                               ToastManager::ToastStyle::Warning);
        return;
    }
    m_isOpen = true;
    m_importedCount.reset();
    m_selectedColumn = 0;
    m_selectedSwimLane = 0;
    Q_EMIT changed();
    Q_EMIT openChanged();
}

void TaskImportViewModel::close()
{
    if (m_isOpen) {
        m_isOpen = false;
        m_isPreviewMode = false;
        m_importedCount.reset();
        Q_EMIT openChanged();
        Q_EMIT changed();
    }
}

void TaskImportViewModel::setInputText(const QString &text)
{
    if (m_inputText != text) {
        m_inputText = text;
        Q_EMIT inputTextChanged();
    }
}

void TaskImportViewModel::pasteFromClipboard()
{
    const QString text = m_services.clipboard.text();
    if (!text.isEmpty()) {
        setInputText(text);
    }
}

void TaskImportViewModel::parseInput()
{
    if (!canPreview()) {
        return;
    }
    m_parsedTasks = PlainTextTaskParser::parseTaskList(m_inputText);
    m_ignoredLines = PlainTextTaskParser::countIgnoredLines(m_inputText);
    m_errorMessage.clear();
    m_isPreviewMode = true;
    Q_EMIT changed();
    QStringList words = counts();
    if (m_ignoredLines > 0) {
        words.append(limitWarning());
    }
    m_services.announcer.announce(words.join(u", "));
}

void TaskImportViewModel::backToEdit()
{
    m_isPreviewMode = false;
    Q_EMIT changed();
}

QStringList TaskImportViewModel::counts() const
{
    const auto completed = std::count_if(m_parsedTasks.begin(), m_parsedTasks.end(),
                                         std::mem_fn(&ParsedPlainTextTask::isCompleted));
    QSet<QString> tags;
    for (const ParsedPlainTextTask &task : m_parsedTasks) {
        tags.unite(QSet<QString>(task.hashtags.begin(), task.hashtags.end()));
    }
    return {tr("%1 tasks found").arg(m_parsedTasks.size()), tr("%1 completed").arg(completed),
            tr("%1 tags").arg(tags.size())};
}

QString TaskImportViewModel::limitWarning() const
{
    return m_ignoredLines == 0 ? QString()
                               : tr("Note: Import limited to %1 tasks (%2 additional tasks ignored)")
                                     .arg(PlainTextTaskParser::MaximumLines)
                                     .arg(m_ignoredLines);
}

QVariantList TaskImportViewModel::tasks() const
{
    QVariantList rows;
    for (const ParsedPlainTextTask &task : m_parsedTasks) {
        const QString symbol =
            task.isCompleted ? QStringLiteral("checkmark.square") : QStringLiteral("square");
        rows.append(QVariantMap{{QStringLiteral("text"), task.text},
                                {QStringLiteral("symbol"), symbol},
                                {QStringLiteral("isCompleted"), task.isCompleted},
                                {QStringLiteral("hashtags"), task.hashtags}});
    }
    return rows;
}

QStringList TaskImportViewModel::columns() const
{
    QStringList names(tr("Default"));
    for (const Column &column : m_services.board.columnManager().columns()) {
        names.append(column.name);
    }
    return names;
}

QStringList TaskImportViewModel::swimLanes() const
{
    QStringList names(tr("Default"));
    for (const SwimLane &swimLane : m_services.board.swimLaneManager().swimLanes()) {
        names.append(swimLane.name);
    }
    return names;
}

void TaskImportViewModel::setSelectedColumn(int index)
{
    m_selectedColumn = index;
    Q_EMIT changed();
}

void TaskImportViewModel::setSelectedSwimLane(int index)
{
    m_selectedSwimLane = index;
    Q_EMIT changed();
}

QString TaskImportViewModel::importText() const
{
    const auto count = m_parsedTasks.size();
    const QString text = count == 1 ? tr("Import 1 Task") : tr("Import %1 Tasks").arg(count);
    return m_ignoredLines == 0 ? text : tr("%1 (Limited)").arg(text);
}

QString TaskImportViewModel::confirmation() const
{
    if (!m_importedCount) {
        return {};
    }
    const QString text = m_isStored ? tr("%1 tasks have been imported successfully.")
                                    : tr("%1 tasks are on the board, but could not be saved yet. The text is "
                                         "kept here.");
    return text.arg(*m_importedCount);
}

void TaskImportViewModel::importTasks()
{
    if (!m_parsedTasks.empty() && !m_isImporting && !m_importedCount) {
        launch(import(), QStringLiteral("TaskImport"));
    }
}

QCoro::Task<> TaskImportViewModel::import()
{
    const QPointer<TaskImportViewModel> self(this);
    m_isImporting = true;
    auto importing = m_services.board.importPlainTextTasks(
        m_parsedTasks, chosenId(m_services.board.columnManager().columns(), m_selectedColumn),
        chosenId(m_services.board.swimLaneManager().swimLanes(), m_selectedSwimLane));
    const ImportResult result = co_await importing;
    if (!self) {
        co_return;
    }
    m_isImporting = false;
    if (result.count == 0) {
        m_errorMessage = tr("There is no column to import the tasks into.");
        Q_EMIT changed();
        co_return;
    }
    m_importedCount = result.count;
    m_isStored = result.isStored;
    m_parsedTasks.clear();
    if (m_isStored) {
        setInputText({});
    }
    Q_EMIT changed();
    m_services.announcer.announce(confirmation());
}

} // namespace vantrel
