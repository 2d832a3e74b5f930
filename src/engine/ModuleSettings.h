#pragma once

#include <cstdint>

namespace sweeply {

class UserDefaults;

/// Should the module list's row with that view code be checked, as the stored switches of its modules stand? Rows
/// without a switch never.
[[nodiscard]] bool isRowCheckedByPreferences(std::uint8_t viewCode, const UserDefaults& defaults);

} // namespace sweeply
