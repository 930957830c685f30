#include "viewmodels/TaskCardKeyboardNavigation.h"

#include <Qt>

namespace vantrel {

namespace {

std::optional<int> target(int key, const CardGridPosition &position)
{
    switch (key) {
    case Qt::Key_Left:
        return position.index - 1;
    case Qt::Key_Right:
        return position.index + 1;
    case Qt::Key_Up:
        return position.index - position.columns;
    case Qt::Key_Down:
        return position.index + position.columns;
    case Qt::Key_Home:
        return 0;
    case Qt::Key_End:
        return position.count - 1;
    default:
        return std::nullopt;
    }
}

} // namespace

std::optional<int> cardAfterKey(int key, const CardGridPosition &position)
{
    const std::optional<int> next = target(key, position);
    if (!next || position.count == 0) {
        return std::nullopt;
    }
    if (position.index < 0) {
        return key == Qt::Key_End ? *next : 0;
    }
    return *next >= 0 && *next < position.count ? *next : position.index;
}

} // namespace vantrel
