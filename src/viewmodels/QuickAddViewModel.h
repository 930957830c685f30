#pragma once

#include "foundations/NotificationCenter.h"

#include <QCoroTask>
#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

namespace vantrel {

class Announcer;
class TaskManagerFactory;

/**
 * The sheet that adds tasks, one line each, as fast as they are typed: a line is taken the moment it is
 * submitted, and the tasks are made in that order. A line that could not become a task comes back. Owned by
 * AppViewModel; GUI thread.
 */
class QuickAddViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program")
    Q_PROPERTY(bool open READ isOpen NOTIFY openChanged)
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
    Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY stateChanged)
    Q_PROPERTY(QStringList failedLines READ failedLines NOTIFY stateChanged)
    Q_PROPERTY(QString lastAdded READ lastAdded NOTIFY stateChanged)
public:
    QuickAddViewModel(TaskManagerFactory &managers, NotificationCenter &notifications, Announcer &announcer,
                      QObject *parent = nullptr);

    bool isOpen() const { return m_isOpen; }
    QString text() const { return m_text; }
    void setText(const QString &text);
    QString errorMessage() const { return m_errorMessage; }
    /** Lines that failed while the field held another one already. */
    const QStringList &failedLines() const { return m_failedLines; }
    /** The name of the last task made since the sheet was opened. */
    QString lastAdded() const { return m_lastAdded; }

    Q_INVOKABLE void show();
    /** Leaves the sheet; what is not a task yet is there again next time. */
    Q_INVOKABLE void close();
    /** Takes the line to make a task of it; a line of blanks does nothing. */
    Q_INVOKABLE void submit();
    /** Tries the failed lines again. */
    Q_INVOKABLE void retry();

Q_SIGNALS:
    void openChanged();
    void textChanged();
    void stateChanged();

private:
    void take(const QStringList &lines);
    QCoro::Task<> createTasks();
    QCoro::Task<> createTask(QString line);
    void finish(const QString &line);
    void takeBack(const QString &line, const QString &error);

    TaskManagerFactory &m_managers;
    Announcer &m_announcer;
    bool m_isOpen = false;
    QString m_text;
    QString m_errorMessage;
    QString m_lastAdded;
    QStringList m_failedLines;
    /** Taken and not yet tasks; the first one is being made while m_isCreating. */
    QStringList m_lines;
    bool m_isCreating = false;
};

} // namespace vantrel
