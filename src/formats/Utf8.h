#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace sweeply {

/// How many bytes the well-formed character takes that `text`, which is not empty, begins with. 0 for none, and for
/// NUL.
[[nodiscard]] std::size_t utf8SequenceLength(std::string_view text);

/// `text` with U+FFFD for every byte that is not part of well-formed UTF-8, and for NUL.
[[nodiscard]] std::string validUtf8(std::string_view text);

} // namespace sweeply
