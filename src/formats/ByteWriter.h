#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace sweeply {

/// Builds a byte string out of integers that all have the same byte order, whatever this machine's own is.
class ByteWriter final {
  public:
    explicit ByteWriter(std::endian order) : m_order(order) {}

    void u8(std::uint8_t value) { m_bytes.push_back(static_cast<char>(value)); }
    void u16(std::uint16_t value) { integer(value, 2); }
    void u32(std::uint32_t value) { integer(value, 4); }
    void u64(std::uint64_t value) { integer(value, 8); }
    void bytes(std::string_view text) { m_bytes.append(text); }
    /// Zeros up to `size` bytes in all; nothing when there are as many already.
    void padTo(std::size_t size) {
        if (m_bytes.size() < size)
            m_bytes.resize(size, '\0');
    }
    /// `text` cut or filled with zeros to exactly `width` bytes, as Mach-O names its segments.
    void fixedText(std::string_view text, std::size_t width) {
        const std::size_t end = m_bytes.size() + width;
        bytes(text.substr(0, width));
        padTo(end);
    }

    [[nodiscard]] std::size_t size() const { return m_bytes.size(); }
    [[nodiscard]] std::string take() { return std::exchange(m_bytes, {}); }

  private:
    void integer(std::uint64_t value, unsigned width) {
        for (unsigned i = 0; i < width; ++i) {
            const unsigned shift = 8 * (m_order == std::endian::big ? width - 1 - i : i);
            u8(static_cast<std::uint8_t>(value >> shift));
        }
    }

    std::endian m_order;
    std::string m_bytes;
};

} // namespace sweeply
