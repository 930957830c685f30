#pragma once

#include "exchange/PlainTextTaskParser.h"
#include "viewmodels/TaskExportViewModel.h"

#include <QCoroTask>
#include <QVariantList>

namespace vantrel {

/**
 * The dialog that takes a list as text, shows the tasks that it would make, and makes them. Owned by
 * AppViewModel; GUI thread.
 */
class TaskImportViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program")
    Q_PROPERTY(bool open READ isOpen NOTIFY openChanged)
    Q_PROPERTY(QString inputText READ inputText WRITE setInputText NOTIFY inputTextChanged)
    Q_PROPERTY(bool canPreview READ canPreview NOTIFY inputTextChanged)
    Q_PROPERTY(bool isPreviewMode READ isPreviewMode NOTIFY changed)
    Q_PROPERTY(QStringList counts READ counts NOTIFY changed)
    Q_PROPERTY(QString limitWarning READ limitWarning NOTIFY changed)
    Q_PROPERTY(QVariantList tasks READ tasks NOTIFY changed)
    Q_PROPERTY(QStringList columns READ columns NOTIFY changed)
    Q_PROPERTY(int selectedColumn READ selectedColumn WRITE setSelectedColumn NOTIFY changed)
    Q_PROPERTY(QStringList swimLanes READ swimLanes NOTIFY changed)
    Q_PROPERTY(int selectedSwimLane READ selectedSwimLane WRITE setSelectedSwimLane NOTIFY changed)
    Q_PROPERTY(QString importText READ importText NOTIFY changed)
    Q_PROPERTY(QString confirmation READ confirmation NOTIFY changed)
    Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY changed)
public:
    explicit TaskImportViewModel(const ExchangeServices &services, QObject *parent = nullptr);

    bool isOpen() const { return m_isOpen; }
    QString inputText() const { return m_inputText; }
    void setInputText(const QString &text);
    bool canPreview() const { return !m_inputText.trimmed().isEmpty(); }
    bool isPreviewMode() const { return m_isPreviewMode; }
    /** "{n} tasks found", "{n} completed", "{n} tags". */
    QStringList counts() const;
    /** What will not be imported; empty if all will. */
    QString limitWarning() const;
    /** Maps with "text", "symbol", "isCompleted" and "hashtags", in the order of the list. */
    QVariantList tasks() const;
    /** "Default", then those of the board; so is the next. */
    QStringList columns() const;
    int selectedColumn() const { return m_selectedColumn; }
    void setSelectedColumn(int index);
    QStringList swimLanes() const;
    int selectedSwimLane() const { return m_selectedSwimLane; }
    void setSelectedSwimLane(int index);
    /** The words of the button that imports. */
    QString importText() const;
    /** How many tasks came in and whether they are stored, after it was done; empty before. */
    QString confirmation() const;
    QString errorMessage() const { return m_errorMessage; }

    Q_INVOKABLE void show();
    /** Leaves the dialog; a text that was not imported, or not stored, is there again next time. */
    Q_INVOKABLE void close();
    Q_INVOKABLE void pasteFromClipboard();
    /** Reads the list and shows what it holds. */
    Q_INVOKABLE void parseInput();
    Q_INVOKABLE void backToEdit();
    Q_INVOKABLE void importTasks();

Q_SIGNALS:
    void openChanged();
    void inputTextChanged();
    void changed();

private:
    QCoro::Task<> import();

    ExchangeServices m_services;
    bool m_isOpen = false;
    QString m_inputText;
    bool m_isPreviewMode = false;
    std::vector<ParsedPlainTextTask> m_parsedTasks;
    int m_ignoredLines = 0;
    int m_selectedColumn = 0;
    int m_selectedSwimLane = 0;
    bool m_isImporting = false;
    std::optional<int> m_importedCount;
    bool m_isStored = false;
    QString m_errorMessage;
};

} // namespace vantrel
