#include "platform/linux/PortalAppearance.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QPalette>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

#include <memory>

using namespace vantrel;

using SettingsBySpace = QMap<QString, QVariantMap>;

namespace {

const QString Appearance = QStringLiteral("org.freedesktop.appearance");
const QString Gnome = QStringLiteral("org.gnome.desktop.interface");

/** The settings portal of a desktop, with settings that the test chooses. */
class FakePortal : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")
public:
    SettingsBySpace settings;

public Q_SLOTS:
    SettingsBySpace ReadAll(const QStringList &) { return settings; }
};

/** A portal on the session bus, answering from a thread of its own as another process would. */
class PortalOnBus
{
public:
    explicit PortalOnBus(const SettingsBySpace &settings)
        : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("portal")))
    {
        m_portal.settings = settings;
        m_portal.moveToThread(&m_thread);
        m_thread.start();
        m_bus.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"), &m_portal,
                             QDBusConnection::ExportAllSlots);
        m_bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
    }
    ~PortalOnBus()
    {
        m_bus.unregisterService(QStringLiteral("org.freedesktop.portal.Desktop"));
        m_bus.unregisterObject(QStringLiteral("/org/freedesktop/portal/desktop"));
        m_thread.quit();
        m_thread.wait();
        QDBusConnection::disconnectFromBus(QStringLiteral("portal"));
    }
    Q_DISABLE_COPY_MOVE(PortalOnBus)

    void change(const QString &space, const QString &key, const QVariant &value) const
    {
        QDBusMessage signal = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/portal/desktop"),
                                                         QStringLiteral("org.freedesktop.portal.Settings"),
                                                         QStringLiteral("SettingChanged"));
        signal << space << key << QVariant::fromValue(QDBusVariant(value));
        m_bus.send(signal);
    }

private:
    QDBusConnection m_bus;
    QThread m_thread;
    FakePortal m_portal;
};

} // namespace

class TestPortalAppearance : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        qDBusRegisterMetaType<SettingsBySpace>();
        if (!QDBusConnection::sessionBus().isConnected()) {
            QSKIP("no session bus could be started here");
        }
    }

    void theFirstWindowHasTheDesktopsColors_data()
    {
        QTest::addColumn<QVariant>("scheme");
        QTest::addColumn<bool>("isDark");
        QTest::newRow("dark") << QVariant(1u) << true;
        QTest::newRow("light") << QVariant(2u) << false;
        QTest::newRow("no preference: the palette of this test, which is light") << QVariant(0u) << false;
        QTest::newRow("a value from the future") << QVariant(7u) << false;
    }

    void theFirstWindowHasTheDesktopsColors()
    {
        QFETCH(const QVariant, scheme);
        QFETCH(const bool, isDark);
        const PortalOnBus portal({{Appearance, {{QStringLiteral("color-scheme"), scheme}}}});

        const PortalAppearance appearance(QDBusConnection::sessionBus());

        QCOMPARE(appearance.colorScheme() == DesktopAppearance::ColorScheme::Dark, isDark);
    }

    void lessMotionIsReadWhereverTheDesktopKeepsIt_data()
    {
        QTest::addColumn<SettingsBySpace>("settings");
        QTest::addColumn<bool>("isReduced");
        QTest::newRow("nothing said") << SettingsBySpace{} << false;
        QTest::newRow("the common setting")
            << SettingsBySpace{{Appearance, {{QStringLiteral("reduced-motion"), 1u}}}} << true;
        QTest::newRow("GNOME with animations")
            << SettingsBySpace{{Gnome, {{QStringLiteral("enable-animations"), true}}}} << false;
        QTest::newRow("GNOME without")
            << SettingsBySpace{{Gnome, {{QStringLiteral("enable-animations"), false}}}} << true;
        const QString kde = QStringLiteral("org.kde.kdeglobals.KDE");
        const QString factor = QStringLiteral("AnimationDurationFactor");
        QTest::newRow("KDE at half speed")
            << SettingsBySpace{{kde, {{factor, QStringLiteral("0.5")}}}} << false;
        QTest::newRow("KDE at once") << SettingsBySpace{{kde, {{factor, QStringLiteral("0")}}}} << true;
    }

    void lessMotionIsReadWhereverTheDesktopKeepsIt()
    {
        QFETCH(const SettingsBySpace, settings);
        QFETCH(const bool, isReduced);
        const PortalOnBus portal(settings);

        const PortalAppearance appearance(QDBusConnection::sessionBus());

        QCOMPARE(appearance.prefersReducedMotion(), isReduced);
    }

    void aChangeOfTheDesktopArrivesWhileTheProgramRuns()
    {
        const PortalOnBus portal({{Appearance, {{QStringLiteral("color-scheme"), 2u}}}});
        const PortalAppearance appearance(QDBusConnection::sessionBus());
        QCOMPARE(appearance.colorScheme(), DesktopAppearance::ColorScheme::Light);
        QSignalSpy changed(&appearance, &DesktopAppearance::changed);

        portal.change(Appearance, QStringLiteral("color-scheme"), 1u);

        QTRY_COMPARE(changed.size(), 1);
        QCOMPARE(appearance.colorScheme(), DesktopAppearance::ColorScheme::Dark);

        portal.change(QStringLiteral("org.example.other"), QStringLiteral("color-scheme"), 2u);
        portal.change(Gnome, QStringLiteral("enable-animations"), false);

        QTRY_COMPARE(changed.size(), 2);
        QCOMPARE(appearance.colorScheme(), DesktopAppearance::ColorScheme::Dark);
        QVERIFY(appearance.prefersReducedMotion());
    }

    void withoutAPortalThePaletteDecides()
    {
        const PortalAppearance appearance(QDBusConnection::sessionBus());
        QCOMPARE(appearance.colorScheme(), DesktopAppearance::ColorScheme::Light);
        QSignalSpy changed(&appearance, &DesktopAppearance::changed);
        QPalette dark;
        dark.setColor(QPalette::Window, Qt::black);

        QGuiApplication::setPalette(dark);

        QCOMPARE(appearance.colorScheme(), DesktopAppearance::ColorScheme::Dark);
        QTRY_COMPARE(changed.size(), 1);
        QGuiApplication::setPalette(QPalette());
    }
};

QTEST_MAIN(TestPortalAppearance)
#include "test_portal_appearance.moc"
