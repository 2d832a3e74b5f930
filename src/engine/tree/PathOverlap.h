#pragma once

#include <string_view>

namespace sweeply {

/// Does `whole` hold `part` anywhere? An empty part is held by nothing.
[[nodiscard]] bool holdsText(std::string_view whole, std::string_view part);

/// Does `path` hold `part` from anywhere to the end of one of its components? An empty part is held by nothing.
[[nodiscard]] bool holdsUpToComponent(std::string_view path, std::string_view part);

} // namespace sweeply
