#pragma once

#include <string>
#include <string_view>

namespace sweeply {

/// `text` with U+FFFD for every byte that is not part of well-formed UTF-8, and for NUL.
[[nodiscard]] std::string validUtf8(std::string_view text);

} // namespace sweeply
