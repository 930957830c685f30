#include "foundations/Launch.h"
#include "foundations/Log.h"
#include "foundations/NotificationCenter.h"
#include "support/Await.h"
#include "support/ManualClock.h"
#include "support/TestRegistry.h"

#include <QTest>

namespace vantrel::test {

using namespace Qt::StringLiterals;

namespace {
constexpr NotificationName First{u"First"};
constexpr NotificationName Second{u"Second"};

QCoro::Task<> failLater(Clock &clock)
{
    co_await clock.sleep(1.0);
    throw std::runtime_error("broken");
}
} // namespace

/** Notifications whose handlers change who listens, clocks that stand, and tasks that nobody awaits. */
class TestNotifications : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void deliversAtOnceAndInOrder()
    {
        NotificationCenter center;
        QObject owner;
        QStringList heard;
        for (const QString &who : {u"a"_s, u"b"_s, u"c"_s}) {
            center.observe(First, &owner, [&heard, who](const Notification &notification) {
                heard.append(who + notification.object.toString() +
                             notification.userInfo.value(u"k"_s).toString());
            });
        }
        center.post(First, u"1"_s, {{u"k"_s, 2}});
        center.post(Second, u"3"_s);
        QCOMPARE(heard, (QStringList{u"a12"_s, u"b12"_s, u"c12"_s}));
    }

    void letsHandlersChangeWhoListens()
    {
        NotificationCenter center;
        QObject first;
        auto second = std::make_unique<QObject>();
        QObject third;
        QObject added;
        QStringList heard;
        center.observe(First, &first, [&](const Notification &) {
            heard.append(u"first"_s);
            center.removeObserver(&third);
            second.reset();
            center.observe(First, &added, [&](const Notification &) { heard.append(u"added"_s); });
            center.removeObserver(&first);
        });
        center.observe(First, second.get(), [&](const Notification &) { heard.append(u"second"_s); });
        center.observe(First, &third, [&](const Notification &) { heard.append(u"third"_s); });

        center.post(First);
        QCOMPARE(heard, QStringList{u"first"_s});
        center.post(First);
        QCOMPARE(heard, (QStringList{u"first"_s, u"added"_s}));
    }

    void runsDelayedWorkInItsOrder()
    {
        ManualClock clock;
        const Date start = clock.now();
        auto owner = std::make_unique<QObject>();
        QList<double> times;
        const auto note = [&] {
            times.append(clock.now() - start);
        };
        clock.after(2.0, this, note);
        clock.after(1.0, this, [&] {
            note();
            clock.after(0.5, this, note);
        });
        clock.after(1.5, owner.get(), note);
        owner.reset();
        clock.advance(1.9);
        QCOMPARE(times, (QList{1.0, 1.5}));
        clock.advance(0.1);
        QCOMPARE(times, (QList{1.0, 1.5, 2.0}));
    }

    void tellsOfATaskThatFails()
    {
        const LogWriter writer(LogWriter::Output::Silent);
        ManualClock clock;
        QString message;
        launch(failLater(clock), u"work"_s, [&message](const QString &text) { message = text; });
        QVERIFY(message.isEmpty());
        clock.advance(1.0);
        QCOMPARE(message, u"broken"_s);
        QVERIFY(LogWriter::recentMessages().contains(u"work failed: broken"_s));
        QVERIFY_THROWS_EXCEPTION(std::runtime_error, await(failLater(clock), std::chrono::milliseconds(1)));
    }
};

VANTREL_REGISTER_TEST(TestNotifications)

} // namespace vantrel::test

#include "test_notifications.moc"
