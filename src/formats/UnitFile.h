#pragma once

#include <string>
#include <string_view>

// Texts as they stand in a unit file of systemd. What it holds is lines of UTF-8; nothing makes a line end, another
// control character or another byte part of a text.

namespace sweeply {

[[nodiscard]] bool fitsInUnitFile(std::string_view text);

/// Up to the end of a line. A backslash at the very end would swallow the next line: end in something else.
[[nodiscard]] std::string unitText(std::string_view text);

/// One word of several: a path in a list of paths.
[[nodiscard]] std::string unitWord(std::string_view text);

/// One argument of a command, where variables would be filled in as well.
[[nodiscard]] std::string unitArgument(std::string_view text);

} // namespace sweeply
