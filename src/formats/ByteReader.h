#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace sweeply {

/// Reads integers of one byte order out of a stranger's bytes. Whatever lies beyond their end is nothing.
class ByteReader final {
  public:
    ByteReader(std::string_view bytes, std::endian order) : m_bytes(bytes), m_order(order) {}

    [[nodiscard]] std::size_t size() const { return m_bytes.size(); }

    [[nodiscard]] std::optional<std::uint8_t> u8(std::uint64_t at) const { return integer<std::uint8_t>(at); }
    [[nodiscard]] std::optional<std::uint16_t> u16(std::uint64_t at) const { return integer<std::uint16_t>(at); }
    [[nodiscard]] std::optional<std::uint32_t> u32(std::uint64_t at) const { return integer<std::uint32_t>(at); }
    [[nodiscard]] std::optional<std::uint64_t> u64(std::uint64_t at) const { return integer<std::uint64_t>(at); }
    [[nodiscard]] std::optional<std::string_view> bytes(std::uint64_t at, std::uint64_t size) const {
        if (at > m_bytes.size() || size > m_bytes.size() - at)
            return std::nullopt;
        return m_bytes.substr(static_cast<std::size_t>(at), static_cast<std::size_t>(size));
    }

  private:
    template<typename Integer>
    [[nodiscard]] std::optional<Integer> integer(std::uint64_t at) const {
        const auto found = bytes(at, sizeof(Integer));
        if (!found)
            return std::nullopt;
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < sizeof(Integer); ++i) {
            const std::size_t place = m_order == std::endian::big ? i : sizeof(Integer) - 1 - i;
            value = value << 8U | static_cast<std::uint8_t>((*found)[place]);
        }
        return static_cast<Integer>(value);
    }

    std::string_view m_bytes;
    std::endian m_order;
};

} // namespace sweeply
