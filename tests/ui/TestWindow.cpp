#include "ui/TestWindow.h"

#include <QElapsedTimer>
#include <QTest>

#include <cstdio>

namespace vantrel::test {

namespace {

constexpr qint64 PatienceMilliseconds = 5000;

QQuickItem *visibleItem(QQuickItem *root, const QString &objectName)
{
    if (!root->isVisible()) {
        return nullptr;
    }
    if (root->objectName() == objectName) {
        return root;
    }
    for (QQuickItem *child : root->childItems()) {
        if (QQuickItem *found = visibleItem(child, objectName)) {
            return found;
        }
    }
    return nullptr;
}

QStringList &complaintsHeard()
{
    static QStringList lines;
    return lines;
}

/** Keeps what Qt and QML warn of; the program's own lines are the business of other tests. */
void hear(QtMsgType type, const QMessageLogContext &context, const QString &line)
{
    const bool isOwn = QLatin1String(context.category).startsWith(QLatin1String("vantrel"));
    // Written where the machine has no session of a user.
    const bool isOfTheMachine = line.contains(u"XDG_RUNTIME_DIR") || line.contains(u"propagateSizeHints");
    if (type != QtDebugMsg && type != QtInfoMsg && !isOwn && !isOfTheMachine) {
        complaintsHeard().append(line);
    }
    if (type == QtFatalMsg) {
        std::fprintf(stderr, "%s\n", qPrintable(line));
    }
}

} // namespace

TestWindow::TestWindow()
{
    complaintsHeard().clear();
    qInstallMessageHandler(hear);
    services.desktop.appearance.setPrefersReducedMotion(true);
}

TestWindow::~TestWindow()
{
    m_window.reset();
    qInstallMessageHandler(nullptr);
}

void TestWindow::start()
{
    services.start();
    open();
}

void TestWindow::open()
{
    m_window = std::make_unique<MainWindow>(app());
    if (!m_window->window()) {
        qFatal("the window could not be opened: %s", qPrintable(m_window->warnings().join(u'\n')));
    }
    if (!wait([this] { return item(QStringLiteral("toolbar")); })) {
        qFatal("the window stayed empty: %s", qPrintable(m_window->warnings().join(u'\n')));
    }
    window().requestActivate();
    if (!QTest::qWaitForWindowActive(&window())) {
        qFatal("the window does not become active");
    }
}

void TestWindow::restart()
{
    m_window.reset();
    services.stop();
    start();
}

QQuickItem *TestWindow::item(const QString &objectName) const
{
    return visibleItem(m_window->window()->contentItem(), objectName);
}

QString TestWindow::focusName() const
{
    const QQuickItem *focused = m_window->window()->activeFocusItem();
    return focused ? focused->objectName() : QString();
}

bool TestWindow::wait(const std::function<bool()> &isTrue)
{
    QElapsedTimer patience;
    patience.start();
    services.settle();
    while (!isTrue() && !patience.hasExpired(PatienceMilliseconds)) {
        services.advance(0.1);
        QTest::qWait(5);
    }
    return isTrue();
}

void TestWindow::click(const QString &objectName)
{
    QQuickItem *target = item(objectName);
    if (!target) {
        qFatal("nothing in the window is called \"%s\"", qPrintable(objectName));
    }
    const QPointF center = target->mapToScene(QPointF(target->width() / 2, target->height() / 2));
    QTest::mouseClick(&window(), Qt::LeftButton, {}, center.toPoint());
    services.settle();
}

void TestWindow::press(const QString &keys)
{
    for (const QString &key : keys.split(u' ')) {
        const QKeyCombination combination = QKeySequence::fromString(key, QKeySequence::PortableText)[0];
        QTest::keyClick(&window(), combination.key(), combination.keyboardModifiers());
        services.settle();
    }
}

void TestWindow::type(const QString &text)
{
    for (const QChar letter : text) {
        QTest::keyClick(&window(), letter.toLatin1());
    }
}

QImage TestWindow::picture()
{
    services.settle();
    return window().grabWindow();
}

QString TestWindow::complaints() const
{
    return complaintsHeard().join(u'\n');
}

} // namespace vantrel::test
