#include "platform/linux/AtSpiAnnouncementSink.h"

#include <QGuiApplication>
#include <QQuickWindow>
#include <QSocketNotifier>

#include <unistd.h>

#include <array>

/** Opens a window and announces each line of its standard input, those after a "!" with high priority. */
int main(int argc, char **argv)
{
    using namespace vantrel;
    QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("speaker"));
    QQuickWindow window;
    window.setTitle(QStringLiteral("The window"));
    window.resize(300, 200);
    window.show();

    AtSpiAnnouncementSink sink;
    QByteArray input;
    QSocketNotifier lines(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&lines, &QSocketNotifier::activated, &application, [&] {
        std::array<char, 4096> bytes{};
        const ssize_t count = ::read(STDIN_FILENO, bytes.data(), bytes.size());
        if (count <= 0) {
            QCoreApplication::quit();
            return;
        }
        input.append(bytes.data(), count);
        while (input.contains('\n')) {
            const QString line = QString::fromUtf8(input.left(input.indexOf('\n')));
            input.remove(0, input.indexOf('\n') + 1);
            const bool isUrgent = line.startsWith(u'!');
            sink.announce(isUrgent ? line.mid(1) : line,
                          isUrgent ? AnnouncementPriority::High : AnnouncementPriority::Normal);
        }
    });
    return QGuiApplication::exec();
}
