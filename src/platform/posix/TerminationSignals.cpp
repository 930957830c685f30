#include "platform/TerminationSignals.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace vantrel {

namespace {

constexpr std::array Signals{SIGTERM, SIGINT, SIGHUP};

/** A pipe to ourselves: a handler may write to it, while hardly anything else is allowed there. */
std::array<int, 2> pipeEnds{-1, -1};

void handleSignal(int number)
{
    const int savedError = errno;
    const auto byte = static_cast<unsigned char>(number);
    [[maybe_unused]] const ssize_t written = ::write(pipeEnds[1], &byte, 1);
    errno = savedError;
}

void handleAllWith(void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (const int number : Signals) {
        ::sigaction(number, &action, nullptr);
    }
}

} // namespace

TerminationSignals::TerminationSignals(QObject *parent) : QObject(parent)
{
    if (::pipe(pipeEnds.data()) != 0) {
        return;
    }
    for (const int end : pipeEnds) {
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
        ::fcntl(end, F_SETFL, O_NONBLOCK);
    }
    m_notifier = std::make_unique<QSocketNotifier>(pipeEnds[0], QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] {
        unsigned char number = 0;
        while (::read(pipeEnds[0], &number, 1) == 1) {
            Q_EMIT received(number);
        }
    });
    handleAllWith(&handleSignal);
}

TerminationSignals::~TerminationSignals()
{
    if (m_notifier) {
        handleAllWith(SIG_DFL);
        m_notifier.reset();
        ::close(pipeEnds[0]);
        ::close(pipeEnds[1]);
        pipeEnds = {-1, -1};
    }
}

} // namespace vantrel
