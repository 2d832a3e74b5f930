#include "formats/PropertyListGuard.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <vector>

namespace sweeply::plist {

namespace {

constexpr std::size_t kMaximalDepth = 256;
/// Values after every reference has been followed. A hundred times more than the largest list of a real system.
constexpr std::uint64_t kMaximalValues = 1'000'000;
constexpr std::uint64_t kMaximalContents = 64ULL << 20;
constexpr std::size_t kTrailerSize = 32;
constexpr std::size_t kHeaderSize = 8;

// The kinds of objects in a binary list that matter here.
constexpr std::uint64_t kData = 0x4;
constexpr std::uint64_t kAscii = 0x5;
constexpr std::uint64_t kUtf16 = 0x6;
constexpr std::uint64_t kDictionary = 0xD;

constexpr const char* kTooDeep = "nested too deeply";

/// The objects of a binary list, as far as it takes to follow their references.
class ObjectTable final {
  public:
    explicit ObjectTable(std::string_view bytes) : m_bytes(bytes) {
        const std::size_t trailer = bytes.size() - kTrailerSize;
        m_offsetSize = static_cast<std::uint8_t>(bytes[trailer + 6]);
        m_referenceSize = static_cast<std::uint8_t>(bytes[trailer + 7]);
        m_count = number(trailer + 8, 8).value_or(0);
        m_root = number(trailer + 16, 8).value_or(0);
        m_offsets = number(trailer + 24, 8).value_or(0);
    }

    struct Object {
        std::uint64_t kind = 0;       ///< upper half of the marker
        std::uint64_t contents = 0;   ///< bytes of a text or of data
        std::uint64_t references = 0; ///< to other objects
        std::uint64_t start = 0;      ///< where either begins
    };

    [[nodiscard]] std::optional<Object> object(std::uint64_t index) const {
        if (index >= m_count || m_offsetSize == 0 || m_offsetSize > 8 || m_count > m_bytes.size())
            return std::nullopt;
        const auto offset = number(m_offsets, m_offsetSize, index);
        const auto marker = offset ? number(*offset, 1) : std::nullopt;
        if (!marker)
            return std::nullopt;
        const std::uint64_t kind = *marker >> 4;
        const bool isContainer = kind == 0xA || kind == 0xC || kind == kDictionary;
        if (!isContainer && (kind < kData || kind > kUtf16))
            return Object{.kind = kind};
        std::uint64_t count = *marker & 0xF;
        std::uint64_t start = *offset + 1;
        if (count == 0xF) {
            const auto width = number(start, 1);
            if (!width || (*width >> 4) != 1 || (*width & 0xF) > 3)
                return std::nullopt;
            const std::uint64_t size = 1ULL << (*width & 0xF);
            const auto longCount = number(start + 1, size);
            if (!longCount)
                return std::nullopt;
            count = *longCount;
            start += 1 + size;
        }
        if (count > m_bytes.size())
            return std::nullopt;
        Object object{.kind = kind, .start = start};
        (isContainer ? object.references : object.contents) = kind == kDictionary || kind == kUtf16 ? 2 * count : count;
        return object;
    }

    [[nodiscard]] std::optional<std::uint64_t> reference(const Object& object, std::uint64_t position) const {
        return number(object.start, m_referenceSize, position);
    }
    /// Is this a text with a NUL character? The library cuts it there, and stops the program when it is a key.
    [[nodiscard]] bool holdsNul(const Object& text) const {
        if (text.kind != kAscii && text.kind != kUtf16)
            return false;
        const std::uint64_t width = text.kind == kUtf16 ? 2 : 1;
        for (std::uint64_t position = 0; position < text.contents / width; ++position)
            if (number(text.start, width, position) == 0)
                return true;
        return false;
    }
    [[nodiscard]] std::uint64_t root() const { return m_root; }

  private:
    /// The big-endian number at the `position`th place of an array that begins at `start`.
    [[nodiscard]] std::optional<std::uint64_t> number(std::uint64_t start, std::uint64_t size,
                                                      std::uint64_t position = 0) const {
        const std::uint64_t length = m_bytes.size();
        if (size == 0 || size > 8 || start >= length || (length - start) / size <= position)
            return std::nullopt;
        std::uint64_t value = 0;
        for (const char byte : m_bytes.substr(start + position * size, size))
            value = value << 8 | static_cast<std::uint8_t>(byte);
        return value;
    }

    std::string_view m_bytes;
    std::uint64_t m_offsetSize = 0;
    std::uint64_t m_referenceSize = 0;
    std::uint64_t m_count = 0;
    std::uint64_t m_root = 0;
    std::uint64_t m_offsets = 0;
};

/// Where the markup that begins at `start` ("<") ends; npos when it does not.
std::size_t endOfMarkup(std::string_view bytes, std::size_t start) {
    const auto after = [&](std::string_view end, std::size_t from) {
        const std::size_t found = bytes.find(end, from);
        return found == std::string_view::npos ? found : found + end.size();
    };
    const std::string_view rest = bytes.substr(start);
    if (rest.starts_with("<!--"))
        return after("-->", start + 4);
    if (rest.starts_with("<![CDATA["))
        return after("]]>", start + 9);
    if (rest.starts_with("<?"))
        return after("?>", start + 2);
    const std::size_t end = after(">", start);
    if (rest.starts_with("<!") && end != std::string_view::npos &&
        bytes.substr(start, end - start).find("[") != std::string_view::npos)
        return after("]>", start);
    return end;
}

} // namespace

std::string reasonAgainstBinary(std::string_view bytes) {
    if (bytes.size() < kHeaderSize + kTrailerSize)
        return "truncated binary property list";
    const ObjectTable table(bytes);

    struct Level {
        ObjectTable::Object object;
        std::uint64_t next = 0;
    };
    std::uint64_t values = 0;
    std::uint64_t contents = 0;
    std::vector<Level> path;
    std::uint64_t index = table.root();
    for (;;) {
        const auto object = table.object(index);
        if (!object)
            return "object " + std::to_string(index) + " of the binary property list is damaged";
        if (table.holdsNul(*object))
            return "a text holds a NUL character";
        contents += object->contents;
        if (++values > kMaximalValues || contents > kMaximalContents)
            return "holds too much";
        path.push_back({*object});
        if (path.size() > kMaximalDepth)
            return kTooDeep;
        while (!path.empty() && path.back().next == path.back().object.references)
            path.pop_back();
        if (path.empty())
            return {};
        const auto reference = table.reference(path.back().object, path.back().next++);
        if (!reference)
            return "truncated binary property list";
        index = *reference;
    }
}

std::string reasonAgainstXml(std::string_view bytes) {
    if (bytes.find('\0') != std::string_view::npos)
        return "an XML property list with NUL characters";
    std::size_t depth = 0;
    for (std::size_t start = bytes.find('<'); start != std::string_view::npos;) {
        const std::size_t end = endOfMarkup(bytes, start);
        if (end == std::string_view::npos)
            return "truncated XML property list";
        const std::string_view markup = bytes.substr(start, end - start);
        const bool isOpaque = markup.starts_with("<!--") || markup.starts_with("<![");
        // The library reads a ">" in quotes as part of the tag. No property list needs one, and the depth counted here
        // must never be less than what the library sees.
        if (!isOpaque && std::count(markup.begin(), markup.end(), '"') % 2 != 0)
            return "a tag with an unfinished text in quotes";
        if (markup.starts_with("<dict") || markup.starts_with("<array"))
            depth += markup.ends_with("/>") ? 0 : 1;
        else if ((markup.starts_with("</dict") || markup.starts_with("</array")) && depth > 0)
            --depth;
        if (depth > kMaximalDepth)
            return kTooDeep;
        start = bytes.find('<', end);
    }
    return {};
}

} // namespace sweeply::plist
