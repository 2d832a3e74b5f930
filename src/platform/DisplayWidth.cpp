#include "platform/DisplayWidth.h"

#include <cstdint>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

namespace sweeply {

namespace {

std::size_t widthOf(UChar32 character) {
    constexpr UChar32 kSoftHyphen = 0xAD; // a format character, but terminals show it
    if (character < 0x7F || character == kSoftHyphen)
        return 1;
    switch (u_charType(character)) {
    case U_NON_SPACING_MARK:
    case U_ENCLOSING_MARK:
    case U_FORMAT_CHAR:
        return 0;
    default:
        break;
    }
    if (character >= 0x1160 && character <= 0x11FF) // vowels and finals join the consonant before them
        return 0;
    switch (u_getIntPropertyValue(character, UCHAR_EAST_ASIAN_WIDTH)) {
    case U_EA_WIDE:
    case U_EA_FULLWIDTH:
        return 2;
    default:
        return 1;
    }
}

/// Goes on from `position` by one character and says how wide that is.
std::size_t takeCharacter(std::string_view text, std::size_t& position) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    UChar32 character = 0;
    U8_NEXT(bytes, position, text.size(), character); // below zero for what is no UTF-8
    return widthOf(character);
}

} // namespace

std::size_t displayWidth(std::string_view text) {
    std::size_t width = 0;
    for (std::size_t position = 0; position < text.size();)
        width += takeCharacter(text, position);
    return width;
}

std::string_view cutToWidth(std::string_view text, std::size_t columns) {
    std::size_t width = 0;
    for (std::size_t position = 0; position < text.size();) {
        const std::size_t start = position;
        width += takeCharacter(text, position);
        if (width > columns)
            return text.substr(0, start);
    }
    return text;
}

} // namespace sweeply
