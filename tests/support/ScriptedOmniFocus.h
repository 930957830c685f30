#pragma once

#include "sources/omnifocus/ScriptRunner.h"

#include <QRegularExpression>
#include <QStringList>

#include <functional>
#include <optional>
#include <vector>

namespace vantrel::test {

/**
 * OmniFocus as far as it is talked to: understands each script by its text, holds a small document and
 * answers in the wire format. Used on the script thread while a script runs, on the test's own otherwise.
 */
class ScriptedOmniFocus final : public ScriptRunner
{
public:
    struct Task
    {
        QString id;
        QString name;
        QString note;
        QString due;
        QString completed;
        QString created = QStringLiteral("Monday, 2 November 2026 at 08:00:00");
        bool isFlagged = false;
        QString projectName;
        QString tagName;
        QString deferred;
        /** Of a repeating task: when this instance is thought to have come up. */
        QString inferred;
        bool isRepeating = false;
    };

    bool isAvailable() const override { return isInstalled; }
    ScriptOutcome run(const QString &source) override;

    Task *find(const QString &id);

    bool isInstalled = true;
    /** What the system answers in place of running anything. */
    std::optional<ScriptOutcome::Failure> failure;
    std::vector<Task> tasks;
    QStringList projects;
    QStringList tags;
    QString dueSoon = QStringLiteral("2.0|17:00:00");
    QStringList scripts;

private:
    ScriptOutcome answerTo(const QString &source);
    ScriptOutcome edit(const QString &source);
    ScriptOutcome create(const QString &source);
    QString record(const Task &task, bool isActiveFetch) const;
};

} // namespace vantrel::test
