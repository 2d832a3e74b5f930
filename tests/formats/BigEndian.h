#pragma once

#include <cstdint>
#include <stdexcept>
#include <string_view>

namespace sweeply::test {

/// Reads an unsigned integer of `width` bytes, in the order that most of the Mac's formats use. Fails a test by
/// throwing.
inline std::uint64_t bigEndian(std::string_view bytes, std::size_t at, unsigned width) {
    if (at + width > bytes.size())
        throw std::out_of_range("a field beyond the end of the file");
    std::uint64_t value = 0;
    for (unsigned i = 0; i < width; ++i)
        value = value << 8 | static_cast<std::uint8_t>(bytes[at + i]);
    return value;
}

inline std::uint32_t big32(std::string_view bytes, std::size_t at) {
    return static_cast<std::uint32_t>(bigEndian(bytes, at, 4));
}

} // namespace sweeply::test
