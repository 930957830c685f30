#pragma once

#include "foundations/UserDefaults.h"

#include <QLoggingCategory>
#include <QObject>
#include <QStringList>

#include <atomic>
#include <optional>
#include <source_location>

namespace vantrel {

/** From most to least severe; the raw values are stored. */
enum class LogLevel { Fault = 0, Error = 1, Notice = 2, Info = 3, Debug = 4 };

enum class LogCategory { Navigation, TaskMovement, FocusControl, DragDrop, Swimlanes, Columns, General };

/**
 * Diagnostics. Each line goes through the Qt logging category of its LogCategory ("vantrel.general" and so
 * on), so that the journal and QT_LOGGING_RULES work as for any Qt program; LogManager sets the threshold.
 *
 * May be called from any thread.
 */
namespace log {

using Location = std::source_location;

void debug(const QString &message, LogCategory category = LogCategory::General,
           Location at = Location::current());
void info(const QString &message, LogCategory category = LogCategory::General,
          Location at = Location::current());
void warning(const QString &message, LogCategory category = LogCategory::General,
             Location at = Location::current());
void error(const QString &message, LogCategory category = LogCategory::General,
           Location at = Location::current());

/** True if debug lines are written: ask before building one line per task. */
bool isDebugEnabled(LogCategory category = LogCategory::General);

} // namespace log

/** Holds the threshold below which log lines are dropped. One instance, owned by Services; GUI thread. */
class LogManager : public QObject
{
    Q_OBJECT
public:
    /** Takes the stored threshold; anything but an integer from 0 to 4 counts as not stored. */
    explicit LogManager(UserDefaults &defaults, QObject *parent = nullptr);

    LogLevel minimumLogLevel() const { return m_minimumLogLevel; }

    /** Stores the threshold; it acts from the next line on. */
    void setMinimumLogLevel(LogLevel level);

Q_SIGNALS:
    void minimumLogLevelChanged();

private:
    void apply();

    UserDefaults &m_defaults;
    LogLevel m_minimumLogLevel = LogLevel::Notice;
};

/**
 * Writes every line of the program in the form "[category] message [file:line]" to stderr while it lives, in
 * place of Qt's own message handler, and keeps the last lines for whoever wants to look. One at a time.
 */
class LogWriter
{
public:
    enum class Output { Stderr, Silent };

    explicit LogWriter(Output output = Output::Stderr);
    ~LogWriter();
    Q_DISABLE_COPY_MOVE(LogWriter)

    /** The messages of the last 2000 lines, oldest first, without category and place. */
    static QStringList recentMessages();
    static void forgetMessages();
};

} // namespace vantrel
