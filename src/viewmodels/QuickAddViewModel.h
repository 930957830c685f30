#pragma once

#include "foundations/NotificationCenter.h"

#include <QCoroTask>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace vantrel {

class Announcer;
class TaskManagerProtocol;

/**
 * The sheet that adds tasks, one line each, as fast as they are typed. What was typed stays until it is a
 * task. Owned by AppViewModel; GUI thread.
 */
class QuickAddViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program")
    Q_PROPERTY(bool open READ isOpen NOTIFY openChanged)
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
    Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY stateChanged)
    Q_PROPERTY(QString lastAdded READ lastAdded NOTIFY stateChanged)
    Q_PROPERTY(bool creating READ isCreating NOTIFY stateChanged)
public:
    QuickAddViewModel(TaskManagerProtocol &plainText, NotificationCenter &notifications, Announcer &announcer,
                      QObject *parent = nullptr);

    bool isOpen() const { return m_isOpen; }
    QString text() const { return m_text; }
    void setText(const QString &text);
    QString errorMessage() const { return m_errorMessage; }
    /** The name of the last task made since the sheet was opened. */
    QString lastAdded() const { return m_lastAdded; }
    bool isCreating() const { return m_isCreating; }

    Q_INVOKABLE void show();
    /** Leaves the sheet; a line that is not a task yet is there again next time. */
    Q_INVOKABLE void close();
    /** Makes a task of the line and clears it for the next; a line of blanks does nothing. */
    Q_INVOKABLE void submit();

Q_SIGNALS:
    void openChanged();
    void textChanged();
    void stateChanged();

private:
    QCoro::Task<> create(QString line);
    void finish(const QString &line, const QString &error);

    TaskManagerProtocol &m_plainText;
    Announcer &m_announcer;
    bool m_isOpen = false;
    bool m_isCreating = false;
    QString m_text;
    QString m_errorMessage;
    QString m_lastAdded;
};

} // namespace vantrel
