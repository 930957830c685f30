#pragma once

#include "viewmodels/CardContent.h"

#include <QList>

namespace vantrel {

/**
 * The second level of the keyboard: inside a selected card, Tab walks its parts. Holds the parts of the one
 * card that has the focus, and which of them is at turn. A value of BoardNavigation.
 */
class KanbanCardKeyboardNavigation
{
public:
    using Component = KanbanCardFocus::Value;

    const QList<Component> &cachedComponents() const { return m_cachedComponents; }
    /** None while the card as a whole has the focus. */
    Component focusedComponent() const { return m_focusedComponent; }

    /** Begins with the parts of another card, none of them at turn. */
    void initializeCachedComponents(const QList<Component> &components);
    /** The card's parts have changed; a part at turn that is gone gives its turn to the next one. */
    void updateCachedComponents(const QList<Component> &components);

    /** Goes to the next part, or the previous one; false, with nothing changed, past either end. */
    bool handleComponentNavigation(bool reverse);
    void clearFocus() { m_focusedComponent = KanbanCardFocus::None; }

private:
    Component nextVisibleComponent(Component after) const;
    Component previousVisibleComponent(Component before) const;

    QList<Component> m_cachedComponents;
    Component m_focusedComponent = KanbanCardFocus::None;
};

} // namespace vantrel
