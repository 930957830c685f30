#pragma once

#include <QByteArray>
#include <QUuid>

#include <optional>

namespace vantrel {

/** The id of the board as long as there is only one. */
inline constexpr QUuid DefaultBoardId(0x6F1C2A52, 0x8B0D, 0x4D1E, 0x9C, 0x47, 0x3A, 0x5E, 0x0B, 0x7D, 0x9F,
                                      0x10);

/** A few settings of the program, kept as one value of the user defaults. */
struct AppConfiguration
{
    /** The board last saved. */
    std::optional<QUuid> lastBoardId = DefaultBoardId;
    /** Seconds. */
    double refreshInterval = 60.0;
    bool autoSyncEnabled = true;
    double zoomLevel = 1.0;

    QByteArray toJson() const;
    /** Nothing if a required key is missing or of another type. */
    static std::optional<AppConfiguration> fromJson(const QByteArray &json);

    friend bool operator==(const AppConfiguration &, const AppConfiguration &) = default;
};

} // namespace vantrel
