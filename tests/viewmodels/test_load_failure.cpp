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

AppleScriptError scriptError(AppleScriptError::Kind kind)
{
    return AppleScriptError(kind, u"detail"_s);
}

SourceError platformError(int code)
{
    return SourceError(u"Platform"_s, code, u"no access"_s);
}

TaskRepositoryError::Cause failed(const QString &source, std::exception_ptr error)
{
    return {source, std::move(error), false, u"it failed"_s};
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
    void eachErrorIsJudged_data();
    void eachErrorIsJudged();
};

void TestLoadFailure::eachErrorIsJudged_data()
{
    using Script = AppleScriptError::Kind;
    QTest::addColumn<std::exception_ptr>("error");
    QTest::addColumn<LoadFailure>("expected");
    const auto row = [](const char *name, std::exception_ptr error, const LoadFailure &expected) {
        QTest::newRow(name) << std::move(error) << expected;
    };
    const LoadFailure noAccess{Kind::PermissionMissing, u"Permission issue: no access"_s};

    row("not running", thrown(scriptError(Script::OmniFocusNotRunning)), {Kind::Message, NotRunning});
    row("denied", thrown(scriptError(Script::PermissionDenied)), {Kind::PermissionMissing, Denied});
    row("pro required", thrown(scriptError(Script::OmniFocusProRequired)), {Kind::ProRequired, ProRequired});
    row("any other script error", thrown(scriptError(Script::ExecutionFailed)),
        {Kind::Other, scriptError(Script::ExecutionFailed).message()});
    for (const int code : {-600, -1743, -1728}) {
        row(qPrintable(u"platform %1"_s.arg(code)), thrown(platformError(code)), noAccess);
    }
    row("platform -1", thrown(platformError(-1)), {Kind::Other, u"no access"_s});
    row("foreign", thrown(std::runtime_error("odd")), {Kind::Other, u"odd"_s});

    row("OmniFocus refused", repositoryError({refused(u"OmniFocus"_s)}), {Kind::PermissionMissing, Denied});
    row("Reminders refused", repositoryError({refused(u"Reminders"_s)}),
        {Kind::PermissionMissing, u"Permission issue: Reminders: Please allow it."_s});
    row("the first that means something decides",
        repositoryError({failed(u"OmniFocus"_s, thrown(scriptError(Script::ExecutionFailed))),
                         failed(u"OmniFocus"_s, thrown(scriptError(Script::OmniFocusNotRunning))),
                         refused(u"Reminders"_s)}),
        {Kind::Message, NotRunning});
    row("a permission behind an unknown failure",
        repositoryError({failed(u"OmniFocus"_s, thrown(std::runtime_error("odd"))), refused(u"Reminders"_s)}),
        {Kind::PermissionMissing, u"Permission issue: Reminders: Please allow it."_s});
    row("nothing but unknown failures",
        repositoryError({failed(u"Plain Text"_s, thrown(std::runtime_error("odd")))}),
        {Kind::Other, u"all of them"_s});
}

void TestLoadFailure::eachErrorIsJudged()
{
    QFETCH(std::exception_ptr, error);
    QFETCH(LoadFailure, expected);

    const LoadFailure judged = judgeLoadFailure(error);

    QCOMPARE(judged.text, expected.text);
    QCOMPARE(judged.kind, expected.kind);
}

VANTREL_REGISTER_TEST(TestLoadFailure)

} // namespace vantrel::test

#include "test_load_failure.moc"
