#include "formats/Utf8.h"

#include <cstdint>

namespace sweeply {

std::size_t utf8SequenceLength(std::string_view text) {
    const auto byte = [&](std::size_t position) { return static_cast<std::uint8_t>(text[position]); };
    const std::uint8_t lead = byte(0);
    if (lead < 0x80)
        return lead == 0 ? 0 : 1;
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() < length)
        return 0;
    for (std::size_t position = 1; position < length; ++position)
        if ((byte(position) & 0xC0) != 0x80)
            return 0;
    const bool isOverlong = (lead == 0xE0 && byte(1) < 0xA0) || (lead == 0xF0 && byte(1) < 0x90);
    const bool isNoCharacter = (lead == 0xED && byte(1) > 0x9F) || (lead == 0xF4 && byte(1) > 0x8F);
    return isOverlong || isNoCharacter ? 0 : length;
}

std::string validUtf8(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const std::size_t length = utf8SequenceLength(text);
        result += length > 0 ? text.substr(0, length) : "\xEF\xBF\xBD";
        text.remove_prefix(length > 0 ? length : 1);
    }
    return result;
}

} // namespace sweeply
