#pragma once

#include <QString>

#include <array>

namespace vantrel {

/** The screens that share one board. */
enum class ViewMode { Visualize, Prioritize, Analyze, Optimize };

/** What the program knows of a view mode. */
struct ViewModeInfo
{
    ViewMode mode;
    /** "kanban" for Visualize, unlike its name: it is what the window's accessible value speaks. */
    QStringView rawValue;
    QStringView label;
    QStringView symbol;
};

inline constexpr std::array<ViewModeInfo, 4> AllViewModes{{
    {ViewMode::Visualize, u"kanban", u"Visualize", u"rectangle.split.3x1"},
    {ViewMode::Prioritize, u"prioritize", u"Prioritize",
     u"inset.filled.topleft.topright.bottomleft.bottomright.rectangle"},
    {ViewMode::Analyze, u"analyze", u"Analyze", u"chart.line.uptrend.xyaxis"},
    {ViewMode::Optimize, u"optimize", u"Optimize", u"chart.bar.xaxis"},
}};

inline const ViewModeInfo &infoOf(ViewMode mode)
{
    return AllViewModes.at(static_cast<std::size_t>(mode));
}

/** The modes that have a screen. A mode without one is offered nowhere. */
inline constexpr std::array AvailableViewModes{ViewMode::Visualize, ViewMode::Analyze, ViewMode::Optimize};

} // namespace vantrel
