// A user at work in a process of its own, for tests that kill it or take its disk away.
//
//   vantrel_store_script work FOLDER SEED FIRST-STEP MARK   never ends; tells each stored step on stdout
//   vantrel_store_script fill-disk FOLDER                   ends with 0 if nothing was lost, 77 without a
//   disk

#include "foundations/Log.h"
#include "persistence/PersistenceManager.h"
#include "support/Await.h"
#include "support/ManualClock.h"
#include "support/StoreScript.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdio>

#ifdef Q_OS_LINUX
#include <sched.h>
#include <sys/mount.h>
#endif
#include <unistd.h>

namespace {

using namespace vantrel;
using namespace vantrel::test;

constexpr int LaneEverySteps = 7;
constexpr int NoDisk = 77;

/** All that a store needs, on a folder that outlives the process. */
struct Store
{
    explicit Store(const QString &folder) : config{AppEnvironment::Testing, folder} {}

    AppConfig config;
    FileCalls calls;
    FileSaver saver{calls};
    UserDefaults defaults{saver, config.filePath(QStringLiteral("devUser-defaults.json"))};
    ManualClock clock;
    PersistenceManager persistence{config, defaults, saver, clock};
};

void tell(const QString &line)
{
    const QByteArray bytes = line.toUtf8() + '\n';
    if (::write(STDOUT_FILENO, bytes.constData(), static_cast<size_t>(bytes.size())) != bytes.size()) {
        std::exit(1);
    }
}

int work(const QString &folder, quint32 seed, int firstStep, const QString &mark, bool savesLanes)
{
    Store store(folder);
    StoreScript script(seed, mark);
    while (script.step() < firstStep) {
        script.advance();
    }
    for (;;) {
        script.advance();
        script.perform(store.persistence);
        if (savesLanes && script.step() % LaneEverySteps == 0) {
            SwimLane lane = SwimLane::defaultSwimLane();
            lane.height = script.step();
            store.persistence.saveSwimLaneConfiguration({lane});
        }
        await(store.persistence.drained());
        if (!store.persistence.problems().empty()) {
            tell(u"problem: " + store.persistence.problems().front().message);
        }
        tell(QString::number(script.step()));
    }
}

#ifdef Q_OS_LINUX
/** Gives the process mounts of its own, which nobody else sees and which end with it. */
bool leaveSharedMounts()
{
    const QByteArray userMap = "0 " + QByteArray::number(::getuid()) + " 1";
    if (::unshare(CLONE_NEWNS) != 0) {
        QFile map(QStringLiteral("/proc/self/uid_map"));
        if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0 || !map.open(QIODevice::WriteOnly) ||
            map.write(userMap) != userMap.size()) {
            return false;
        }
    }
    return ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

bool mountSmallDisk(const QString &folder)
{
    return leaveSharedMounts() &&
           ::mount("tmpfs", folder.toUtf8().constData(), "tmpfs", 0, "size=1500k") == 0;
}
#else
bool mountSmallDisk(const QString &)
{
    return false;
}
#endif

bool fill(const QString &path)
{
    QFile ballast(path);
    const QByteArray block(4096, 'x');
    while (ballast.open(QIODevice::Append) && ballast.write(block) == block.size() && ballast.flush()) {
        ballast.close();
    }
    return QFileInfo(path).size() > 0;
}

/** Works on a disk until it is full and for a while after, then makes room, and looks whether all is there.
 */
int workOnFullDisk(const QString &folder)
{
    QDir().mkpath(folder);
    if (!mountSmallDisk(folder)) {
        return NoDisk;
    }
    StoreScript script(7);
    {
        Store store(folder);
        for (int i = 0; i < 30; ++i) {
            script.advance();
            script.perform(store.persistence);
        }
        await(store.persistence.drained());
        const QString ballast = store.config.filePath(QStringLiteral("ballast"));
        if (!fill(ballast)) {
            std::fputs("the disk could not be filled\n", stderr);
            return 1;
        }
        for (int i = 0; i < 200; ++i) {
            script.advance();
            script.perform(store.persistence);
        }
        await(store.persistence.drained());
        const std::vector<StorageProblem> problems = store.persistence.problems();
        if (problems.size() != 1 || !problems.front().message.contains(QStringLiteral("the disk is full"))) {
            std::fprintf(stderr, "%zu problems instead of one of a full disk\n", problems.size());
            return 1;
        }
        const auto memory = await(store.persistence.readBoardMemory());
        if (!memory || !memory->isBehind) {
            std::fputs("the store does not say that it is behind\n", stderr);
            return 1;
        }
        QFile::remove(ballast);
        if (ScriptedState::stored(store.persistence) != script.state()) {
            std::fputs("changes made on the full disk are lost\n", stderr);
            return 1;
        }
    }
    Store again(folder);
    const bool isThere = ScriptedState::stored(again.persistence) == script.state();
    return isThere && again.persistence.problems().empty() ? 0 : 1;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const LogWriter silence(LogWriter::Output::Silent);
    const QStringList arguments = QCoreApplication::arguments();
    const QString folder = arguments.value(2);
    if (arguments.value(1) == u"fill-disk") {
        return workOnFullDisk(folder);
    }
    return work(folder, arguments.value(3).toUInt(), arguments.value(4).toInt(), arguments.value(5),
                arguments.value(6) == u"lanes");
}
