#pragma once

namespace vantrel {

class Clock;
class PersistenceManager;

/** Writes a board with every state that a card can be in, as of now: four columns, three swimlanes. */
void writeSampleBoard(PersistenceManager &persistence, const Clock &clock);

} // namespace vantrel
