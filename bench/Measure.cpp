#include "Measure.h"

#include <QCoreApplication>
#include <QFile>

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

void LoopWatch::runUntil(const std::function<bool()> &isDone)
{
    while (!isDone()) {
        // What one turn handles is what a frame would have had to wait for.
        const double turn = milliseconds([] { QCoreApplication::processEvents(QEventLoop::AllEvents); });
        longestBlockMilliseconds = std::max(longestBlockMilliseconds, turn);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        if (turn < 0.02) {
            usleep(50);
        }
    }
}

} // namespace vantrel::bench
