#include "viewmodels/BoardLoadingViewModel.h"

#include "foundations/Launch.h"

namespace vantrel {

BoardLoadingViewModel::BoardLoadingViewModel(BoardState &board, QObject *parent)
    : QObject(parent), m_board(board)
{
    connect(&board, &BoardState::loadingChanged, this, &BoardLoadingViewModel::changed);
    connect(&board, &BoardState::organized, this, &BoardLoadingViewModel::changed);
}

bool BoardLoadingViewModel::isBoardReady() const
{
    return m_board.hasBeenOrganized() && !hasFailed();
}

bool BoardLoadingViewModel::isLoading() const
{
    return m_board.loadingState() == BoardLoadingState::NotLoaded ||
           m_board.loadingState() == BoardLoadingState::Loading;
}

QString BoardLoadingViewModel::percentage() const
{
    return QString::number(static_cast<int>(progress() * 100.0)) + u'%';
}

QString BoardLoadingViewModel::statusMessage() const
{
    const QString message = m_board.loadingStatusMessage();
    return message.isEmpty() ? tr("Preparing your board...") : message;
}

void BoardLoadingViewModel::retry()
{
    launch(m_board.loadDataAsync(), QStringLiteral("Loading the board"));
}

} // namespace vantrel
