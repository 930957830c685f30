#include "viewmodels/KanbanCardKeyboardNavigation.h"

#include "foundations/Log.h"

#include <algorithm>

namespace vantrel {

void KanbanCardKeyboardNavigation::initializeCachedComponents(const QList<Component> &components)
{
    m_cachedComponents = components;
    m_focusedComponent = KanbanCardFocus::None;
}

void KanbanCardKeyboardNavigation::updateCachedComponents(const QList<Component> &components)
{
    m_cachedComponents = components;
    if (m_focusedComponent == KanbanCardFocus::None || components.contains(m_focusedComponent)) {
        return;
    }
    log::debug(u"🎯 Auto-forwarding from invisible component: " + accessibilityName(m_focusedComponent),
               LogCategory::FocusControl);
    m_focusedComponent = nextVisibleComponent(m_focusedComponent);
    log::debug(u"🎯 Auto-forwarded to visible component: " + accessibilityName(m_focusedComponent),
               LogCategory::FocusControl);
}

bool KanbanCardKeyboardNavigation::handleComponentNavigation(bool reverse)
{
    Component target = KanbanCardFocus::None;
    if (m_focusedComponent != KanbanCardFocus::None) {
        target =
            reverse ? previousVisibleComponent(m_focusedComponent) : nextVisibleComponent(m_focusedComponent);
    } else if (!m_cachedComponents.isEmpty()) {
        target = reverse ? m_cachedComponents.last() : m_cachedComponents.first();
    }
    if (target == KanbanCardFocus::None) {
        return false;
    }
    m_focusedComponent = target;
    return true;
}

// The parts are walked in the order of their enumeration, so a part that has just gone still has neighbours.

KanbanCardFocus::Value KanbanCardKeyboardNavigation::nextVisibleComponent(Component after) const
{
    const auto next = std::find_if(m_cachedComponents.begin(), m_cachedComponents.end(),
                                   [after](Component component) { return component > after; });
    return next == m_cachedComponents.end() ? KanbanCardFocus::None : *next;
}

KanbanCardFocus::Value KanbanCardKeyboardNavigation::previousVisibleComponent(Component before) const
{
    const auto previous = std::find_if(m_cachedComponents.rbegin(), m_cachedComponents.rend(),
                                       [before](Component component) { return component < before; });
    return previous == m_cachedComponents.rend() ? KanbanCardFocus::None : *previous;
}

} // namespace vantrel
