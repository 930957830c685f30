#include "viewmodels/WIPGaugeViewModel.h"

#include <algorithm>

namespace vantrel {

WIPGaugeViewModel::WIPGaugeViewModel(BoardState &board, QObject *parent) : QObject(parent), m_board(board)
{
    connect(&board, &BoardState::changed, this, &WIPGaugeViewModel::update);
    connect(&board.wipGaugeSettings(), &WIPGaugeSettings::settingsChanged, this, &WIPGaugeViewModel::update);
    update();
}

void WIPGaugeViewModel::update()
{
    // Nobody looks at the gauge while it is switched off.
    if (isEnabled()) {
        m_count = m_board.getWIPStatus().count;
    }
    Q_EMIT changed();
}

WIPThresholds WIPGaugeViewModel::thresholds() const
{
    const WIPGaugeSettings &settings = m_board.wipGaugeSettings();
    return {settings.warnThreshold(), settings.maxThreshold()};
}

double WIPGaugeViewModel::progress() const
{
    return std::clamp(m_board.wipGaugeSettings().calculateProgress(m_count), 0.0, 1.0);
}

QColor WIPGaugeViewModel::color() const
{
    const Color color = m_board.wipGaugeSettings().gaugeColor(m_count);
    return QColor(color.red, color.green, color.blue, color.alpha);
}

QString WIPGaugeViewModel::text() const
{
    return WIPTexts::gaugeText(m_count, thresholds());
}

QString WIPGaugeViewModel::emoji() const
{
    return WIPTexts::statusEmoji(wipGaugeStatus(m_count, thresholds()));
}

QString WIPGaugeViewModel::description() const
{
    return WIPTexts::statusDescription(wipGaugeStatus(m_count, thresholds()));
}

bool WIPGaugeViewModel::isOverloaded() const
{
    return wipGaugeStatus(m_count, thresholds()) == WIPGaugeStatus::Overloaded;
}

QString WIPGaugeViewModel::accessibleName() const
{
    return WIPTexts::gaugeAccessibleName();
}

QString WIPGaugeViewModel::accessibleDescription() const
{
    return WIPTexts::gaugeAccessibleValue(m_count, thresholds()) + u". " +
           WIPTexts::gaugeAccessibleHint(m_count, thresholds());
}

} // namespace vantrel
