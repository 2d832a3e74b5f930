#include "formats/UnitFile.h"

#include "formats/Utf8.h"

#include <algorithm>

namespace sweeply {

namespace {

/// `text` with every one of these characters doubled.
std::string doubled(std::string_view text, std::string_view characters) {
    std::string result;
    for (const char c : text) {
        result += c;
        if (characters.find(c) != std::string_view::npos)
            result += c;
    }
    return result;
}

std::string quoted(const std::string& text) {
    std::string result = "\"";
    for (const char c : text) {
        if (c == '"')
            result += '\\';
        result += c;
    }
    return result + '"';
}

} // namespace

bool fitsInUnitFile(std::string_view text) {
    const auto isControl = [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7f; };
    return std::ranges::none_of(text, isControl) && validUtf8(text) == text;
}

std::string unitText(std::string_view text) {
    // "%" introduces what the system fills in by itself.
    return doubled(text, "%");
}

std::string unitWord(std::string_view text) { return quoted(doubled(text, "%\\")); }

std::string unitArgument(std::string_view text) { return quoted(doubled(text, "%\\$")); }

} // namespace sweeply
