#include "ui/TestWindow.h"

#include <QColor>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

/** Relative luminance and contrast as WCAG 2.1 defines them. */
double luminance(const QColor &color)
{
    const auto linear = [](double channel) {
        return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor &a, const QColor &b)
{
    const auto [darker, lighter] = std::minmax(luminance(a), luminance(b));
    return (lighter + 0.05) / (darker + 0.05);
}

} // namespace

/** The values of the theme, read from the real QML module. */
class TestTheme : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_window = std::make_unique<TestWindow>();
        m_window->start();
        QQmlComponent component(qmlEngine(&m_window->window()));
        component.setData(
            "import QtQuick; import Vantrel.Ui; QtObject { readonly property QtObject theme: Theme }", {});
        m_holder.reset(component.create());
        QVERIFY2(m_holder, qPrintable(component.errorString()));
        m_theme = m_holder->property("theme").value<QObject *>();
        QVERIFY(m_theme);
    }

    void cleanupTestCase()
    {
        QVERIFY2(m_window->complaints().isEmpty(), qPrintable(m_window->complaints()));
        m_holder.reset();
        m_window.reset();
    }

    void everyTextCanBeReadOnItsGround_data()
    {
        QTest::addColumn<QStringList>("texts");
        QTest::addColumn<QStringList>("grounds");
        const QStringList plain{u"window"_s, u"rail"_s,      u"surface"_s, u"cell"_s,
                                u"card"_s,   u"cardHover"_s, u"field"_s,   u"hover"_s};
        const auto row = [](const char *name, const QStringList &texts, const QStringList &grounds) {
            QTest::newRow(name) << texts << grounds;
        };
        row("plain", {u"text"_s, u"secondaryText"_s, u"faintText"_s}, plain);
        row("blocked card", {u"text"_s, u"secondaryText"_s, u"faintText"_s, u"redText"_s, u"amberText"_s},
            {u"redTint"_s});
        row("accent", {u"accentText"_s}, plain + QStringList{u"accentTint"_s});
        row("red", {u"redText"_s}, plain + QStringList{u"redTint"_s});
        row("amber", {u"amberText"_s}, plain + QStringList{u"amberTint"_s});
        row("green", {u"greenText"_s}, plain + QStringList{u"greenTint"_s});
        row("violet", {u"violetText"_s}, {u"card"_s, u"violetTint"_s});
        row("WIP warning", {u"secondaryText"_s}, {u"redTint"_s});
        row("main button", {u"inkOnAccent"_s}, {u"accent"_s});
        row("note", {u"inkOnNote"_s}, {u"note"_s});
    }

    void everyTextCanBeReadOnItsGround()
    {
        QFETCH(QStringList, texts);
        QFETCH(QStringList, grounds);
        for (const auto scheme :
             {DesktopAppearance::ColorScheme::Light, DesktopAppearance::ColorScheme::Dark}) {
            m_window->services.desktop.appearance.setColorScheme(scheme);
            for (const QString &text : texts) {
                for (const QString &ground : grounds) {
                    const auto ink = m_theme->property(qPrintable(text)).value<QColor>();
                    const auto paper = m_theme->property(qPrintable(ground)).value<QColor>();
                    QVERIFY2(ink.isValid() && paper.isValid(), qPrintable(text + u" on " + ground));
                    const double reached = contrast(ink, paper);
                    QVERIFY2(reached >= 4.5,
                             qPrintable(u"%1 %2 on %3: %4"_s.arg(QVariant::fromValue(scheme).toString(), text,
                                                                 ground, QString::number(reached))));
                }
            }
        }
    }

    void everyShareOfTheWorkCanBeReadOnItsTint()
    {
        const auto paint = [this](const char *function, const QColor &color) {
            QColor result;
            QMetaObject::invokeMethod(m_theme, function, Q_RETURN_ARG(QColor, result), Q_ARG(QColor, color));
            return result;
        };
        const auto over = [](const QColor &ground, const QColor &tint) {
            const auto mix = [&](float below, float above) {
                return below + (above - below) * tint.alphaF();
            };
            return QColor::fromRgbF(mix(ground.redF(), tint.redF()), mix(ground.greenF(), tint.greenF()),
                                    mix(ground.blueF(), tint.blueF()));
        };
        for (const auto scheme :
             {DesktopAppearance::ColorScheme::Light, DesktopAppearance::ColorScheme::Dark}) {
            m_window->services.desktop.appearance.setColorScheme(scheme);
            for (const char *workload : {"#22c55e", "#f59e0b", "#ef4444"}) {
                const QColor band(workload);
                for (const char *ground : {"surface", "hover"}) {
                    const QColor paper =
                        over(m_theme->property(ground).value<QColor>(), paint("tinted", band));
                    const double reached = contrast(paint("legible", band), paper);
                    QVERIFY2(reached >= 4.5,
                             qPrintable(
                                 u"%1 on %2: %3"_s.arg(band.name()).arg(QLatin1String(ground)).arg(reached)));
                }
            }
        }
    }

    void theWindowFollowsTheDesktop()
    {
        const auto toolbarGround = [this] {
            return m_window->picture().pixelColor(300, 3).lightnessF();
        };
        m_window->services.desktop.appearance.setColorScheme(DesktopAppearance::ColorScheme::Dark);
        QVERIFY(m_window->wait([&] { return toolbarGround() < 0.2; }));
        m_window->services.desktop.appearance.setColorScheme(DesktopAppearance::ColorScheme::Light);
        QVERIFY(m_window->wait([&] { return toolbarGround() > 0.9; }));
    }

    void nothingMovesWhereLessMotionIsWished()
    {
        for (const char *duration : {"quick", "move", "fade"}) {
            QCOMPARE(m_theme->property(duration).toInt(), 0);
        }
        m_window->services.desktop.appearance.setPrefersReducedMotion(false);
        QCOMPARE(m_theme->property("move").toInt(), 200);
        m_window->services.desktop.appearance.setPrefersReducedMotion(true);
    }

private:
    std::unique_ptr<TestWindow> m_window;
    std::unique_ptr<QObject> m_holder;
    QObject *m_theme = nullptr;
};

} // namespace vantrel::test

QTEST_MAIN(vantrel::test::TestTheme)
#include "test_theme.moc"
