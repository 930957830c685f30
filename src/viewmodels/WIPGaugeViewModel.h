#pragma once

#include "board/BoardState.h"

#include <QColor>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace vantrel {

/** The work-in-progress gauge of the toolbar. Owned by AppViewModel; GUI thread. */
class WIPGaugeViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program")
    Q_PROPERTY(bool enabled READ isEnabled NOTIFY changed)
    Q_PROPERTY(double progress READ progress NOTIFY changed)
    Q_PROPERTY(QColor color READ color NOTIFY changed)
    Q_PROPERTY(QString text READ text NOTIFY changed)
    Q_PROPERTY(QString emoji READ emoji NOTIFY changed)
    Q_PROPERTY(QString description READ description NOTIFY changed)
    Q_PROPERTY(bool overloaded READ isOverloaded NOTIFY changed)
    Q_PROPERTY(QString accessibleName READ accessibleName CONSTANT)
    Q_PROPERTY(QString accessibleDescription READ accessibleDescription NOTIFY changed)
public:
    explicit WIPGaugeViewModel(BoardState &board, QObject *parent = nullptr);

    bool isEnabled() const { return m_board.wipGaugeSettings().isEnabled(); }
    /** 0 to 1: how much of the bar is filled. */
    double progress() const;
    QColor color() const;
    QString text() const;
    QString emoji() const;
    QString description() const;
    bool isOverloaded() const;
    QString accessibleName() const;
    QString accessibleDescription() const;

Q_SIGNALS:
    void changed();

private:
    void update();
    WIPThresholds thresholds() const;

    BoardState &m_board;
    int m_count = 0;
};

} // namespace vantrel
