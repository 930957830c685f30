#pragma once

#include "foundations/WorkItem.h"

#include <QCoroTask>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace vantrel {

class BoardState;

/**
 * The renaming of a task on its card. One at a time. The source is asked first, and the board follows it;
 * until then, and when the source refuses, what was typed stays. Owned by BoardViewModel; GUI thread.
 */
class TaskNameEditor : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the board")
    Q_PROPERTY(QString taskId READ taskId NOTIFY taskChanged)
    Q_PROPERTY(QString text MEMBER m_text NOTIFY textChanged)
    Q_PROPERTY(bool isSaving READ isSaving NOTIFY savingChanged)
    Q_PROPERTY(QString alertMessage READ alertMessage NOTIFY alertChanged)
public:
    explicit TaskNameEditor(BoardState &board, QObject *parent = nullptr);

    /** The task that is being renamed; empty for none. */
    const QString &taskId() const { return m_taskId; }
    bool isSaving() const { return m_isSaving; }
    /** Why the last renaming failed; empty once that is dismissed. */
    const QString &alertMessage() const { return m_alertMessage; }

    /** Does nothing for a task that is not on the board, nor while another name is being saved. */
    Q_INVOKABLE void begin(const QString &taskId);
    /** Renames; a name of blanks is refused and stays to be changed, one that is as before ends the editing.
     */
    Q_INVOKABLE void commit();
    Q_INVOKABLE void cancel();
    Q_INVOKABLE void dismissAlert();

Q_SIGNALS:
    void taskChanged();
    void textChanged();
    void savingChanged();
    void alertChanged();

private:
    QCoro::Task<> rename(WorkItemPtr task, QString name);
    void edit(const QString &taskId, const QString &text);
    void setSaving(bool isSaving);
    void setAlertMessage(const QString &message);
    void handleBoardChanged();

    BoardState &m_board;
    QString m_taskId;
    QString m_text;
    QString m_alertMessage;
    bool m_isSaving = false;
};

} // namespace vantrel
