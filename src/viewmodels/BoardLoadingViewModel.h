#pragma once

#include "board/BoardState.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace vantrel {

/**
 * The board's first load, for the window: what to show until there is a board, and the line that finishes
 * above it. Owned by AppViewModel; GUI thread.
 */
class BoardLoadingViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program")
    Q_PROPERTY(bool boardReady READ isBoardReady NOTIFY changed)
    Q_PROPERTY(bool loading READ isLoading NOTIFY changed)
    Q_PROPERTY(bool failed READ hasFailed NOTIFY changed)
    Q_PROPERTY(double progress READ progress NOTIFY changed)
    Q_PROPERTY(QString percentage READ percentage NOTIFY changed)
    Q_PROPERTY(QString statusMessage READ statusMessage NOTIFY changed)
    Q_PROPERTY(QString error READ error NOTIFY changed)
public:
    explicit BoardLoadingViewModel(BoardState &board, QObject *parent = nullptr);

    /** The tasks have their places: the board can be used, although the bar still runs to its end. */
    bool isBoardReady() const;
    bool isLoading() const;
    bool hasFailed() const { return m_board.loadingState() == BoardLoadingState::Error; }
    double progress() const { return m_board.loadingProgress(); }
    QString percentage() const;
    QString statusMessage() const;
    QString error() const { return m_board.loadingError(); }

    Q_INVOKABLE void retry();

Q_SIGNALS:
    void changed();

private:
    BoardState &m_board;
};

} // namespace vantrel
