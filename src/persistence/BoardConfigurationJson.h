#pragma once

#include "foundations/Column.h"
#include "foundations/SwimLane.h"

#include <QByteArray>

#include <optional>
#include <vector>

namespace vantrel {

/** The records of a configuration file, or why there are none. */
template <typename Record>
struct DecodedRecords
{
    std::optional<std::vector<Record>> records;
    /** Names the record and the key; empty on success. */
    QString error;
};

/** A compact JSON array; keys without a value are left out. */
QByteArray encodeColumns(const std::vector<Column> &columns);
QByteArray encodeSwimLanes(const std::vector<SwimLane> &swimLanes);

/**
 * Decoding is strict: a required key that is missing or of another type, a fraction where a whole number
 * belongs, or an unknown type of column fails the whole file. Unknown keys are passed over.
 */
DecodedRecords<Column> decodeColumns(const QByteArray &json);
DecodedRecords<SwimLane> decodeSwimLanes(const QByteArray &json);

} // namespace vantrel
