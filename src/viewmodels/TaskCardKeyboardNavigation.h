#pragma once

#include <optional>

namespace vantrel {

/** Where the keyboard stands in a grid of cards that is read row by row. */
struct CardGridPosition
{
    /** -1 while it stands nowhere. */
    int index = -1;
    int count = 0;
    int columns = 1;
};

/**
 * The card to which a key leads: arrows by one card or one row, Home and End to the ends. From nowhere every
 * such key but End leads to the first card; at an edge it stays. Nothing for other keys, or without cards.
 */
std::optional<int> cardAfterKey(int key, const CardGridPosition &position);

} // namespace vantrel
