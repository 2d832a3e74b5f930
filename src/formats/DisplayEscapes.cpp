#include "formats/DisplayEscapes.h"

#include "formats/Utf8.h"

#include <cstdint>

namespace sweeply {

namespace {

constexpr std::string_view kDigits = "0123456789abcdef";

bool isControl(unsigned char byte) { return byte < 0x20 || byte == 0x7F; }

/// Of the characters that take two or three bytes: those that nobody sees and that change how others are read.
bool isHidden(char32_t character) {
    return (character >= 0x80 && character <= 0x9F)         // C1
           || character == 0x061C                           // Arabic letter mark
           || character == 0x200E || character == 0x200F    // left-to-right and right-to-left mark
           || (character >= 0x2028 && character <= 0x202E)  // separators, embeddings, overrides
           || (character >= 0x2066 && character <= 0x2069); // isolates
}

/// The character of a well-formed sequence of two or three bytes.
char32_t characterOf(std::string_view sequence) {
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(sequence[at]); };
    if (sequence.size() == 2)
        return (byte(0) & 0x1FU) << 6U | (byte(1) & 0x3FU);
    return (byte(0) & 0x0FU) << 12U | (byte(1) & 0x3FU) << 6U | (byte(2) & 0x3FU);
}

void appendDigits(std::string& text, std::uint32_t number, int count) {
    for (int digit = count - 1; digit >= 0; --digit)
        text += kDigits[number >> (4U * static_cast<unsigned>(digit)) & 0xFU];
}

void appendByte(std::string& text, unsigned char byte) {
    switch (byte) {
    case '\n':
        text += "\\n";
        return;
    case '\r':
        text += "\\r";
        return;
    case '\t':
        text += "\\t";
        return;
    default:
        text += "\\x";
        appendDigits(text, byte, 2);
    }
}

std::string escaped(std::string_view text, std::string_view backslash) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const auto byte = static_cast<unsigned char>(text.front());
        const std::size_t length = utf8SequenceLength(text);
        if (length == 0 || isControl(byte) || byte == '\\') {
            if (byte == '\\')
                result += backslash;
            else
                appendByte(result, byte);
            text.remove_prefix(1);
            continue;
        }
        const auto sequence = text.substr(0, length);
        if ((length == 2 || length == 3) && isHidden(characterOf(sequence))) {
            result += "\\u";
            appendDigits(result, characterOf(sequence), 4);
        } else {
            result += sequence;
        }
        text.remove_prefix(length);
    }
    return result;
}

} // namespace

std::string escapedForDisplay(std::string_view text) { return escaped(text, "\\\\"); }

std::string escapedAroundNames(std::string_view text) { return escaped(text, "\\"); }

} // namespace sweeply
