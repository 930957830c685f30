#pragma once

#include "exchange/PlainTextTaskExporter.h"
#include "foundations/Ids.h"
#include "foundations/NotificationCenter.h"

#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <optional>
#include <vector>

namespace vantrel {

class Announcer;
class BoardState;
class Clipboard;
class TaskManagerFactory;
class ToastManager;

/** What text in and out needs of the program. Everything outlives it. */
struct ExchangeServices
{
    BoardState &board;
    TaskManagerFactory &managers;
    NotificationCenter &notifications;
    Announcer &announcer;
    ToastManager &toasts;
    Clipboard &clipboard;
};

/**
 * The dialog that writes tasks as text, with a preview that follows the board, and the quick commands that do
 * so without asking. Owned by AppViewModel; GUI thread.
 */
class TaskExportViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program")
    Q_PROPERTY(bool open READ isOpen NOTIFY openChanged)
    Q_PROPERTY(QStringList scopes READ scopes NOTIFY changed)
    Q_PROPERTY(int selectedScope READ selectedScope NOTIFY changed)
    Q_PROPERTY(QStringList formats READ formats CONSTANT)
    Q_PROPERTY(int selectedFormat READ selectedFormat NOTIFY changed)
    Q_PROPERTY(bool asksForColumn READ asksForColumn NOTIFY changed)
    Q_PROPERTY(bool asksForSwimLane READ asksForSwimLane NOTIFY changed)
    Q_PROPERTY(QStringList columns READ columns NOTIFY changed)
    Q_PROPERTY(int selectedColumn READ selectedColumn NOTIFY changed)
    Q_PROPERTY(QStringList swimLanes READ swimLanes NOTIFY changed)
    Q_PROPERTY(int selectedSwimLane READ selectedSwimLane NOTIFY changed)
    Q_PROPERTY(QStringList previewLines READ previewLines NOTIFY changed)
    Q_PROPERTY(bool hasText READ hasText NOTIFY changed)
    Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY changed)
    Q_PROPERTY(bool showSuccess READ showSuccess NOTIFY changed)
public:
    explicit TaskExportViewModel(const ExchangeServices &services, QObject *parent = nullptr);

    bool isOpen() const { return m_isOpen; }
    /** The labels of the scopes that make sense now. */
    QStringList scopes() const;
    int selectedScope() const;
    QStringList formats() const;
    int selectedFormat() const { return static_cast<int>(m_format); }
    bool asksForColumn() const { return m_scope == ExportScope::SelectedColumn; }
    bool asksForSwimLane() const { return m_scope == ExportScope::SelectedSwimLane; }
    QStringList columns() const;
    /** -1 while none is chosen, as is the next. */
    int selectedColumn() const;
    QStringList swimLanes() const;
    int selectedSwimLane() const;
    /** What would be copied, or that there is nothing. */
    QStringList previewLines() const;
    bool hasText() const { return !m_exportText.isEmpty(); }
    QString exportText() const { return m_exportText; }
    QString errorMessage() const { return m_errorMessage; }
    /** The text is on the clipboard, and the user has not yet seen it said. */
    bool showSuccess() const { return m_showSuccess; }

    Q_INVOKABLE void show();
    Q_INVOKABLE void close();
    Q_INVOKABLE void selectScope(int index);
    Q_INVOKABLE void selectFormat(int index);
    Q_INVOKABLE void selectColumn(int index);
    Q_INVOKABLE void selectSwimLane(int index);
    /** Makes the preview anew. */
    Q_INVOKABLE void refresh();
    Q_INVOKABLE void copyToClipboard();
    /** The user has seen that it is on the clipboard. */
    Q_INVOKABLE void acknowledge();

Q_SIGNALS:
    void openChanged();
    void changed();

private:
    std::vector<ExportScope> availableScopes() const;
    bool isPlainTextEnabled() const;
    void quickExportPlainTextTasks();
    void quickExportVisibleTasks();
    /** Toasts what the board has announced, or says that there was nothing, or that it failed. */
    void tellOfExport(int count, bool isSuccess, const QString &success, const QString &nothing);

    ExchangeServices m_services;
    bool m_isOpen = false;
    ExportScope m_scope = ExportScope::PlainTextTasks;
    ExportFormat m_format = ExportFormat::PlainCheckbox;
    std::optional<ColumnId> m_selectedColumnId;
    std::optional<SwimLaneId> m_selectedSwimLaneId;
    QString m_exportText;
    QString m_errorMessage;
    bool m_showSuccess = false;
};

} // namespace vantrel
