#include "sources/SourceError.h"
#include "sources/omnifocus/AppleScriptError.h"
#include "support/TestRegistry.h"
#include "viewmodels/LoadFailure.h"

#include <QTest>

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

using Kind = LoadFailure::Kind;
using Causes = std::vector<TaskRepositoryError::Cause>;

template <typename Error>
std::exception_ptr thrown(Error error)
{
    return std::make_exception_ptr(std::move(error));
}

TaskRepositoryError::Cause causeOf(std::exception_ptr error)
{
    return {u"OmniFocus"_s, std::move(error), false, u"it failed"_s};
}

TaskRepositoryError::Cause refused(const QString &source)
{
    return {source, nullptr, true, u"Please allow it."_s};
}

std::exception_ptr repositoryError(Causes causes)
{
    return thrown(TaskRepositoryError(u"all of them"_s, std::move(causes)));
}

const QString NotRunning = u"⚠️ OmniFocus isn't running."_s;
const QString Denied = u"AppleScript Permission denied - grant automation permission"_s;
const QString ProRequired =
    u"⚠️ OmniFocus Pro is required for scripting. OmniFocus has been disabled as a task source. "
    "Plain Text has been enabled as a fallback."_s;

} // namespace

/** What a failed fetch means to the user. */
class TestLoadFailure : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachErrorIsJudged()
    {
        using Script = AppleScriptError::Kind;
        struct Row
        {
            const char *name;
            std::exception_ptr error;
            LoadFailure expected;
        };
        const auto script = [](Script kind) {
            return thrown(AppleScriptError(kind, u"detail"_s));
        };
        const auto platform = [](int code) {
            return thrown(SourceError(u"Platform"_s, code, u"no access"_s));
        };
        const std::exception_ptr odd = thrown(std::runtime_error("odd"));
        const LoadFailure noAccess{Kind::PermissionMissing, u"Permission issue: no access"_s};
        const LoadFailure noReminders{Kind::PermissionMissing,
                                      u"Permission issue: Reminders: Please allow it."_s};
        const QString failed = AppleScriptError(Script::ExecutionFailed, u"detail"_s).message();
        for (const Row &row :
             {Row{"not running", script(Script::OmniFocusNotRunning), {Kind::Message, NotRunning}},
              Row{"denied", script(Script::PermissionDenied), {Kind::PermissionMissing, Denied}},
              Row{"pro required", script(Script::OmniFocusProRequired), {Kind::ProRequired, ProRequired}},
              Row{"any other script error", script(Script::ExecutionFailed), {Kind::Other, failed}},
              Row{"platform -600", platform(-600), noAccess},
              Row{"platform -1743", platform(-1743), noAccess},
              Row{"platform -1728", platform(-1728), noAccess},
              Row{"platform -1", platform(-1), {Kind::Other, u"no access"_s}},
              Row{"foreign", odd, {Kind::Other, u"odd"_s}},
              Row{"OmniFocus refused",
                  repositoryError({refused(u"OmniFocus"_s)}),
                  {Kind::PermissionMissing, Denied}},
              Row{"Reminders refused", repositoryError({refused(u"Reminders"_s)}), noReminders},
              Row{"the first that means something decides",
                  repositoryError({causeOf(script(Script::ExecutionFailed)),
                                   causeOf(script(Script::OmniFocusNotRunning)), refused(u"Reminders"_s)}),
                  {Kind::Message, NotRunning}},
              Row{"a permission behind an unknown failure",
                  repositoryError({causeOf(odd), refused(u"Reminders"_s)}), noReminders},
              Row{"nothing but unknown failures",
                  repositoryError({causeOf(odd)}),
                  {Kind::Other, u"all of them"_s}}}) {
            const LoadFailure judged = judgeLoadFailure(row.error);
            QCOMPARE(judged.text, row.expected.text);
            QVERIFY2(judged.kind == row.expected.kind, row.name);
        }
    }
};

VANTREL_REGISTER_TEST(TestLoadFailure)

} // namespace vantrel::test

#include "test_load_failure.moc"
