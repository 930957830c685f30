#include "Measure.h"

#include <QCoreApplication>
#include <QFile>

#include <ctime>
#include <unistd.h>

namespace vantrel::bench {

long residentKiB()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly)) {
        return 0;
    }
    const QList<QByteArray> pages = file.readAll().split(' ');
    return pages.value(1).toLong() * (sysconf(_SC_PAGESIZE) / 1024);
}

double threadMilliseconds()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

double LoopWatch::note(const std::function<void()> &work)
{
    const double before = threadMilliseconds();
    const double turn = milliseconds(work);
    longestWorkMilliseconds = std::max(longestWorkMilliseconds, threadMilliseconds() - before);
    longestBlockMilliseconds = std::max(longestBlockMilliseconds, turn);
    return turn;
}

void LoopWatch::runUntil(const std::function<bool()> &isDone)
{
    while (!isDone()) {
        // What one turn handles is what a frame would have had to wait for.
        const double turn = note([] { QCoreApplication::processEvents(QEventLoop::AllEvents); });
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        if (turn < 0.02) {
            usleep(50);
        }
    }
}

} // namespace vantrel::bench
