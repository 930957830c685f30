// What OmniFocus sends, against the least that reading it can cost.

#include "Measure.h"

#include "app/Services.h"
#include "foundations/Launch.h"
#include "sources/omnifocus/OmniFocusRecords.h"
#include "support/FakeDesktop.h"

#include <QCoreApplication>
#include <QTemporaryDir>

using namespace vantrel;
using namespace vantrel::bench;

namespace {

constexpr int Pairs = 11;
constexpr int TaskCount = 10000;

using Answer = std::vector<omnifocus::AnswerItem>;

/** As the script writes them: each task with two dates, every second one with a due date, every tenth
 * repeats. */
Answer omniFocusAnswer()
{
    const QLocale locale(QLocale::English, QLocale::UnitedKingdom);
    const QDateTime start(QDate(2026, 1, 5), QTime(8, 0));
    const auto text = [&](qint64 minutes) {
        return locale.toString(start.addSecs(minutes * 60),
                               QStringLiteral("dddd, d MMMM yyyy 'at' HH:mm:ss"));
    };
    const QString no = QStringLiteral("false");
    Answer answer;
    for (int i = 0; i < TaskCount; ++i) {
        const bool isRepeating = i % 10 == 0;
        const QStringList fields{u"fUV9GF" + QString::number(i),
                                 u"Task number " + QString::number(i),
                                 QStringLiteral("A note of some words"),
                                 i % 2 == 0 ? text(i + 50000) : QString(),
                                 QString(),
                                 text(i),
                                 text(i + 3000),
                                 no,
                                 QStringLiteral("frANwAUOYmo"),
                                 QStringLiteral("Website Redesign"),
                                 QStringLiteral("c9XNNBHB8ps"),
                                 QStringLiteral("Code"),
                                 no,
                                 isRepeating ? text(i + 20000) : QString(),
                                 isRepeating ? text(i + 20000 - 7 * 1440) : QString(),
                                 isRepeating ? QStringLiteral("true") : no};
        answer.emplace_back(fields.join(u"|||"));
    }
    return answer;
}

/** An OmniFocus that has its answers ready. */
class ReadyOmniFocus final : public ScriptRunner
{
public:
    explicit ReadyOmniFocus(Answer answer) : m_answer(std::move(answer)) {}

    bool isAvailable() const override { return true; }

    ScriptOutcome run(const QString &source) override
    {
        ScriptOutcome outcome;
        if (source.contains(u"PermissionCheckOK")) {
            outcome.text = QStringLiteral("PermissionCheckOK");
        } else if (source.contains(u"DueSoonInterval")) {
            outcome.text = QStringLiteral("2.0|17:00:00");
        } else {
            outcome.items = m_answer;
        }
        return outcome;
    }

private:
    Answer m_answer;
};

void benchRecords(const Answer &answer)
{
    const omnifocus::AnswerDateReader dates(QLocale(QLocale::English, QLocale::UnitedKingdom));
    const Date now = SystemClock().now();
    qsizetype count = 0;
    const Comparison comparison = compare(
        Pairs,
        [&] {
            return milliseconds([&] {
                count += static_cast<qsizetype>(omnifocus::tasksFromAnswer(answer, dates, now).size());
            });
        },
        [&] {
            return milliseconds([&] {
                for (const omnifocus::AnswerItem &item : answer) {
                    count += item->split(QStringLiteral("|||")).size();
                }
            });
        });
    report(QStringLiteral("OmniFocus, 10,000 records read / only split"), figure(comparison),
           QStringLiteral("5x"));
}

/** Fetches and organises; gives the longest time for which the event loop was held. */
double longestPieceOfALoad(Services &services)
{
    bool isDone = false;
    const auto connection = QObject::connect(services.board.get(), &BoardState::organized,
                                             services.board.get(), [&isDone] { isDone = true; });
    LoopWatch watch;
    launch(
        [](Services &all) -> QCoro::Task<> {
            const FetchedTasks fetched = co_await all.repository.fetchTasks(true);
            all.board->organizeTasks(fetched.tasks, fetched.answeredSources);
        }(services),
        QStringLiteral("bench"));
    watch.runUntil([&] { return isDone && services.persistence.pendingJobs() == 0; });
    QObject::disconnect(connection);
    return watch.longestBlockMilliseconds;
}

void benchLoad(const Answer &answer)
{
    const QTemporaryDir directory;
    const AppConfig config{AppEnvironment::Testing, directory.path()};
    SystemClock clock;
    FileCalls files;
    test::FakeDesktop desktop;
    ReadyOmniFocus omniFocus(answer);
    Services services(config, Ports{.clock = clock,
                                    .files = files,
                                    .announcements = desktop.announcements,
                                    .sounds = desktop.sounds,
                                    .appearance = desktop.appearance,
                                    .clipboard = desktop.clipboard,
                                    .urls = desktop.urls,
                                    .screen = desktop.screen,
                                    .scripts = &omniFocus});
    LoopWatch().runUntil([&] { return services.board->loadingState() == BoardLoadingState::Loaded; });
    services.managers.setTaskSourceConfiguration({.isOmniFocusEnabled = true, .isPlainTextEnabled = true});
    services.repository.reloadTaskManagers();
    const double first = longestPieceOfALoad(services);
    std::vector<double> refreshes;
    for (int i = 0; i < Pairs; ++i) {
        refreshes.push_back(longestPieceOfALoad(services));
    }
    report(QStringLiteral("OmniFocus, 10,000 tasks: longest held, first load / refresh"),
           QStringLiteral("%1 ms / median %2 ms").arg(first, 0, 'f', 1).arg(median(refreshes), 0, 'f', 1),
           QStringLiteral("4 ms"));
}

} // namespace

int main(int argc, char *argv[])
{
    const LogWriter logWriter(LogWriter::Output::Silent);
    const QCoreApplication application(argc, argv);
    const Answer answer = omniFocusAnswer();
    benchRecords(answer);
    benchLoad(answer);
}
