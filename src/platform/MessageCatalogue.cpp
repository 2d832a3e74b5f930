#include "platform/MessageCatalogue.h"

#include <cstdint>

namespace sweeply {

namespace {

constexpr std::uint32_t kMagic = 0x950412de;
constexpr std::size_t kWord = 4;

/// A catalogue's numbers and texts; everything beyond its end is nothing.
class Reader final {
  public:
    explicit Reader(std::string_view bytes) : m_bytes(bytes), m_isBigEndian(bytes.starts_with("\x95\x04\x12\xde")) {}

    [[nodiscard]] std::optional<std::size_t> word(std::size_t offset) const {
        if (offset + kWord > m_bytes.size())
            return std::nullopt;
        std::uint32_t value = 0;
        for (std::size_t index = 0; index < kWord; ++index) {
            const auto byte = static_cast<unsigned char>(m_bytes[offset + (m_isBigEndian ? index : kWord - 1 - index)]);
            value = value << 8 | byte;
        }
        return value;
    }
    /// The one that an entry of two words, its length and its place, describes.
    [[nodiscard]] std::optional<std::string_view> text(std::size_t entry) const {
        const auto length = word(entry);
        const auto place = word(entry + kWord);
        if (!length || !place || *place > m_bytes.size() || *length > m_bytes.size() - *place)
            return std::nullopt;
        return m_bytes.substr(*place, *length);
    }

  private:
    const std::string_view m_bytes;
    const bool m_isBigEndian;
};

} // namespace

std::optional<MessageCatalogue> MessageCatalogue::parse(std::string_view bytes) {
    const Reader reader(bytes);
    const auto count = reader.word(2 * kWord);
    const auto keys = reader.word(3 * kWord);
    const auto translations = reader.word(4 * kWord);
    if (reader.word(0) != kMagic || !translations || *count > bytes.size() / kWord)
        return std::nullopt;
    MessageCatalogue catalogue;
    for (std::size_t index = 0; index < *count; ++index) {
        const auto key = reader.text(*keys + 2 * kWord * index);
        const auto translation = reader.text(*translations + 2 * kWord * index);
        if (!key || !translation)
            return std::nullopt;
        // The empty key has the catalogue's own header.
        if (!key->empty() && !translation->empty())
            catalogue.m_texts.emplace(*key, *translation);
    }
    return catalogue;
}

std::optional<std::string_view> MessageCatalogue::find(std::string_view key) const {
    const auto found = m_texts.find(std::string(key));
    return found == m_texts.end() ? std::nullopt : std::optional<std::string_view>(found->second);
}

} // namespace sweeply
