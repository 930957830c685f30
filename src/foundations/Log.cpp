#include "foundations/Log.h"

#include "foundations/DefaultsKeys.h"

#include <QMutex>
#include <QMutexLocker>

#include <array>
#include <cstdio>
#include <cstring>
#include <deque>

namespace vantrel {

namespace {

constexpr std::size_t KeptLines = 2000;

QLoggingCategory &qtCategory(LogCategory category)
{
    static std::array<QLoggingCategory, 7> categories{
        QLoggingCategory("vantrel.navigation"),   QLoggingCategory("vantrel.taskmovement"),
        QLoggingCategory("vantrel.focuscontrol"), QLoggingCategory("vantrel.dragdrop"),
        QLoggingCategory("vantrel.swimlanes"),    QLoggingCategory("vantrel.columns"),
        QLoggingCategory("vantrel.general")};
    return categories.at(static_cast<std::size_t>(category));
}

QString shownName(const char *qtName)
{
    static constexpr std::array names{"Navigation", "TaskMovement", "FocusControl", "DragDrop",
                                      "Swimlanes",  "Columns",      "General"};
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (std::strcmp(qtCategory(static_cast<LogCategory>(i)).categoryName(), qtName) == 0) {
            return QString::fromLatin1(names.at(i));
        }
    }
    return QString::fromLatin1(qtName);
}

void write(QtMsgType type, LogCategory category, const QString &message, const log::Location &at)
{
    const QLoggingCategory &target = qtCategory(category);
    if (!target.isEnabled(type)) {
        return;
    }
    const QMessageLogContext context(at.file_name(), static_cast<int>(at.line()), at.function_name(),
                                     target.categoryName());
    qt_message_output(type, context, message);
}

struct WrittenLines
{
    QMutex mutex;
    std::deque<QString> messages;
    bool silent = false;
    QtMessageHandler previous = nullptr;
};

WrittenLines &writtenLines()
{
    static WrittenLines lines;
    return lines;
}

void handleMessage(QtMsgType, const QMessageLogContext &context, const QString &message)
{
    WrittenLines &lines = writtenLines();
    const QMutexLocker lock(&lines.mutex);
    lines.messages.push_back(message);
    if (lines.messages.size() > KeptLines) {
        lines.messages.pop_front();
    }
    if (lines.silent) {
        return;
    }
    const char *path = context.file ? context.file : "";
    const char *slash = std::strrchr(path, '/');
    const QString line = u'[' + shownName(context.category ? context.category : "default") + u"] " + message +
                         u" [" + QString::fromUtf8(slash ? slash + 1 : path) + u':' +
                         QString::number(context.line) + u"]\n";
    std::fputs(line.toUtf8().constData(), stderr);
}

} // namespace

namespace log {

void debug(const QString &message, LogCategory category, Location at)
{
    write(QtDebugMsg, category, message, at);
}

void info(const QString &message, LogCategory category, Location at)
{
    write(QtInfoMsg, category, message, at);
}

void warning(const QString &message, LogCategory category, Location at)
{
    write(QtWarningMsg, category, message, at);
}

void error(const QString &message, LogCategory category, Location at)
{
    write(QtCriticalMsg, category, message, at);
}

bool isDebugEnabled(LogCategory category)
{
    return qtCategory(category).isDebugEnabled();
}

} // namespace log

LogManager::LogManager(UserDefaults &defaults, QObject *parent) : QObject(parent), m_defaults(defaults)
{
    const std::optional<qint64> stored = defaults.integer(keys::MinimumLogLevel);
    if (stored && *stored >= 0 && *stored <= 4) {
        m_minimumLogLevel = static_cast<LogLevel>(*stored);
    }
    apply();
}

void LogManager::setMinimumLogLevel(LogLevel level)
{
    m_defaults.set(keys::MinimumLogLevel, static_cast<int>(level));
    if (level != m_minimumLogLevel) {
        m_minimumLogLevel = level;
        apply();
        Q_EMIT minimumLogLevelChanged();
    }
}

void LogManager::apply()
{
    for (int i = 0; i <= static_cast<int>(LogCategory::General); ++i) {
        QLoggingCategory &category = qtCategory(static_cast<LogCategory>(i));
        category.setEnabled(QtDebugMsg, m_minimumLogLevel >= LogLevel::Debug);
        category.setEnabled(QtInfoMsg, m_minimumLogLevel >= LogLevel::Info);
        category.setEnabled(QtWarningMsg, m_minimumLogLevel >= LogLevel::Notice);
    }
}

LogWriter::LogWriter(Output output)
{
    WrittenLines &lines = writtenLines();
    {
        const QMutexLocker lock(&lines.mutex);
        lines.silent = output == Output::Silent;
        lines.messages.clear();
    }
    lines.previous = qInstallMessageHandler(&handleMessage);
}

LogWriter::~LogWriter()
{
    qInstallMessageHandler(writtenLines().previous);
}

QStringList LogWriter::recentMessages()
{
    WrittenLines &lines = writtenLines();
    const QMutexLocker lock(&lines.mutex);
    return QStringList(lines.messages.begin(), lines.messages.end());
}

void LogWriter::forgetMessages()
{
    WrittenLines &lines = writtenLines();
    const QMutexLocker lock(&lines.mutex);
    lines.messages.clear();
}

} // namespace vantrel
