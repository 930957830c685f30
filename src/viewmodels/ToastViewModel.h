#pragma once

#include "feedback/ToastManager.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace vantrel {

/** The toast on show, for the window. Owned by AppViewModel; GUI thread. */
class ToastViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program")
    Q_PROPERTY(bool showing READ isShowing NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)
    Q_PROPERTY(QString symbol READ symbol NOTIFY changed)
    Q_PROPERTY(QString accessibleLabel READ accessibleLabel NOTIFY changed)
    Q_PROPERTY(Tone tone READ tone NOTIFY changed)
public:
    enum class Tone { Info, Success, Warning, Error };
    Q_ENUM(Tone)

    explicit ToastViewModel(ToastManager &toasts, QObject *parent = nullptr);

    bool isShowing() const { return m_toasts.isShowing(); }
    QString message() const { return m_toasts.message(); }
    QString symbol() const { return ToastManager::symbol(m_toasts.style()); }
    QString accessibleLabel() const
    {
        return ToastManager::labelPrefix(m_toasts.style()) + m_toasts.message();
    }
    Tone tone() const { return static_cast<Tone>(m_toasts.style()); }

    Q_INVOKABLE void dismiss() { m_toasts.dismiss(); }

Q_SIGNALS:
    void changed();

private:
    ToastManager &m_toasts;
};

} // namespace vantrel
