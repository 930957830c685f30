#pragma once

namespace vantrel {

struct AppConfig;
class Clock;

enum class SampleSources { PlainText, All };

/**
 * Fills an empty folder with a board that has every state a card can be in, as of now: four columns, three
 * swimlanes, and tasks of the wanted sources.
 */
void writeSampleBoard(const AppConfig &config, Clock &clock, SampleSources sources);

} // namespace vantrel
