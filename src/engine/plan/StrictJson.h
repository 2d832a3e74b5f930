#pragma once

#include "platform/Error.h"

#include <nlohmann/json_fwd.hpp>
#include <string_view>

namespace sweeply {

/// Parses JSON of a stranger, which has one meaning or none: no object says a thing twice, none has more than a hundred
/// fields, and nothing is nested more than eight deep. Takes time and memory in proportion to the text. Damaged,
/// without a path, with the place or the name of what is wrong.
[[nodiscard]] Result<nlohmann::ordered_json> strictJson(std::string_view text);

} // namespace sweeply
