#include "app/MainWindow.h"

#include "app/SymbolImageProvider.h"
#include "viewmodels/AppViewModel.h"

#include <QQuickWindow>
#include <QtQml/qqmlextensionplugin.h>

Q_IMPORT_QML_PLUGIN(Vantrel_ViewModelsPlugin)
Q_IMPORT_QML_PLUGIN(Vantrel_UiPlugin)

namespace vantrel {

MainWindow::MainWindow(AppViewModel &app)
{
    QObject::connect(&m_engine, &QQmlEngine::warnings, &m_engine, [this](const QList<QQmlError> &warnings) {
        for (const QQmlError &warning : warnings) {
            m_warnings.append(warning.toString());
        }
    });
    m_engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    // The engine owns the provider.
    m_engine.addImageProvider(QStringLiteral("symbols"), new SymbolImageProvider);
    m_engine.setInitialProperties({{QStringLiteral("app"), QVariant::fromValue(&app)}});
    m_engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Vantrel/Ui/Main.qml")));
    if (!m_engine.rootObjects().isEmpty()) {
        m_window = qobject_cast<QQuickWindow *>(m_engine.rootObjects().first());
    }
}

MainWindow::~MainWindow() = default;

void MainWindow::raise()
{
    if (m_window) {
        m_window->show();
        m_window->raise();
        m_window->requestActivate();
    }
}

} // namespace vantrel
