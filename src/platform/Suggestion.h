#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

/// How many letters have to be put in, taken out, replaced or swapped with their neighbour to make one text of the
/// other, without regard to the case of ASCII letters.
[[nodiscard]] std::size_t editDistance(std::string_view text, std::string_view other);

/// " (did you mean 'NAME'?)" with the known name that is close enough to `typed` to be meant; empty where none is.
[[nodiscard]] std::string suggestionFor(std::string_view typed, const std::vector<std::string>& known);

} // namespace sweeply
