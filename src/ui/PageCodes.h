#pragma once

#include <cstdint>

namespace sweeply {

// The pages of the list on the left that belong to no module, beside the modules' view codes.
inline constexpr std::uint8_t kSpaceView = 20;
inline constexpr std::uint8_t kHistoryView = 21;

} // namespace sweeply
