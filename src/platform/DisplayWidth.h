#pragma once

#include <cstddef>
#include <string_view>

namespace sweeply {

/// The columns that UTF-8 text takes on a terminal: two for each wide character (Chinese, Japanese, Korean, most
/// emoji), none for marks that stand over the character before them. Text with control characters has to be escaped
/// first.
[[nodiscard]] std::size_t displayWidth(std::string_view text);

/// The longest beginning of `text` that fits into `columns`, never half of a character or one without its marks.
[[nodiscard]] std::string_view cutToWidth(std::string_view text, std::size_t columns);

} // namespace sweeply
