#pragma once

#include <QByteArray>
#include <QString>

#include <exception>
#include <vector>

namespace vantrel {

/** What a task source reports instead of a result. Travels through co_await. */
class SourceError : public std::exception
{
public:
    SourceError(QString domain, int code, QString message)
        : m_domain(std::move(domain)), m_code(code), m_message(std::move(message)), m_what(m_message.toUtf8())
    {
    }

    /** Which family of errors `code` belongs to: "TaskManagerError", "TaskRepositoryError" ... */
    const QString &domain() const { return m_domain; }
    int code() const { return m_code; }
    /** For the user. */
    const QString &message() const { return m_message; }
    const char *what() const noexcept override { return m_what.constData(); }

private:
    QString m_domain;
    int m_code;
    QString m_message;
    QByteArray m_what;
};

/** No source could be found for a task. Domain "TaskManagerError", code 1. */
class TaskManagerError : public SourceError
{
public:
    explicit TaskManagerError(QString message);

    /** "No task manager available for WorkItem type: {type name}" */
    static TaskManagerError noManagerForType(const QString &typeName);
    /** "No task manager can handle task ID: {id}" */
    static TaskManagerError noManagerForId(const QString &taskId);
};

/** All sources gave nothing and at least one failed. Domain "TaskRepositoryError", code 1. */
class TaskRepositoryError : public SourceError
{
public:
    struct Cause
    {
        /** The source's display name. */
        QString source;
        /** What the source threw; empty for a refused permission. */
        std::exception_ptr error;
        bool isPermission = false;
        QString message;
    };

    /** `message` has one line "{source}: {error}" a cause. */
    TaskRepositoryError(const QString &message, std::vector<Cause> causes);

    const std::vector<Cause> &causes() const { return m_causes; }

private:
    std::vector<Cause> m_causes;
};

} // namespace vantrel
