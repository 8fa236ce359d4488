#ifndef UNITFLOW_FILEHOST_JSON_JSONREADER_H
#define UNITFLOW_FILEHOST_JSON_JSONREADER_H

#include "filehost/json/JsonText.h"

#include <string_view>
#include <vector>

namespace filehost::json {

/// Something wrong in a text; its places are still offsets.
struct ReadError {
    Problem::Code code;
    quint32 offset;
    QString message;
    QString advice;
    quint32 firstOffset = 0; ///< where a key that is there twice stands first, otherwise 0
};

/// What is wrong in a text, in its order.
struct ReadErrors {
    std::vector<ReadError> list; ///< `limits::problemCount` of them at most
    int leftOut = 0;             ///< those found beyond that
};

/// Fills `nodes` from a text. They are complete only when there is no error.
ReadErrors readNodes(std::string_view text, std::vector<JsonText::Node>& nodes);

/// The characters of a string token that was read before, quotes and escapes resolved.
QString decodeString(std::string_view token);

/// The number that a whole number's token spells; invalid when it does not fit 64 bits.
QVariant decodeWhole(std::string_view token);

/// The nearest double; infinite when the number is beyond all doubles.
double decodeDecimal(std::string_view token);

} // namespace filehost::json

#endif
