#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

namespace sweeply {

// Names are bytes and JSON is UTF-8. In files of ours a text that is UTF-8 stands as it is, and any other as
// {"hex": "2f55736572732fff"}, two digits a byte, so that every name comes back as it was.

[[nodiscard]] nlohmann::ordered_json bytesJson(std::string_view text);

/// Throws std::invalid_argument for what is neither.
[[nodiscard]] std::string bytesIn(const nlohmann::ordered_json& json);

} // namespace sweeply
