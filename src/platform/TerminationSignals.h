#pragma once

#include <QObject>

#include <memory>

class QSocketNotifier;

namespace vantrel {

/**
 * Tells when the system asks the program to end (SIGTERM, SIGINT or SIGHUP), so that it can end in order
 * instead of at once. One instance while it lives, owned by main(); signals on its own thread.
 */
class TerminationSignals : public QObject
{
    Q_OBJECT
public:
    explicit TerminationSignals(QObject *parent = nullptr);
    /** The signals end the program at once again. */
    ~TerminationSignals() override;

Q_SIGNALS:
    void received(int number);

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace vantrel
