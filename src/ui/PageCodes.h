#pragma once

#include <cstdint>

namespace sweeply {

/// The page of the list on the left that belongs to no module, beside the modules' view codes.
inline constexpr std::uint8_t kSpaceView = 20;

} // namespace sweeply
