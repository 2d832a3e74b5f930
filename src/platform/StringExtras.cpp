#include "platform/StringExtras.h"

#include "formats/Utf8.h"
#include "platform/FileManager.h"
#include "platform/TargetPath.h"

#include <algorithm>
#include <array>
#include <unicode/locid.h>
#include <unicode/unistr.h>
#include <vector>

namespace sweeply {

namespace {

constexpr std::array<std::string_view, 25> kSpaces = {
    " ",      "\t",     "\n",     "\v",     "\f",     "\r",     "\u0085", "\u00A0", "\u1680",
    "\u2000", "\u2001", "\u2002", "\u2003", "\u2004", "\u2005", "\u2006", "\u2007", "\u2008",
    "\u2009", "\u200A", "\u2028", "\u2029", "\u202F", "\u205F", "\u3000"};

/// The bytes of the white space that `stands` says is there, or 0.
template<typename Predicate>
std::size_t spaceLength(Predicate stands) {
    const auto* space = std::find_if(kSpaces.begin(), kSpaces.end(), stands);
    return space == kSpaces.end() ? 0 : space->size();
}

/// The bytes of the character that `text` begins with; 1 where it is cut short or no UTF-8.
std::size_t characterLength(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
    const auto isContinuation = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; };
    const bool isWhole = length <= text.size() && std::all_of(text.begin() + 1, text.begin() + length, isContinuation);
    return isWhole ? length : 1;
}

bool containsCharacter(std::string_view characters, std::string_view character) {
    while (!characters.empty()) {
        const std::size_t length = characterLength(characters);
        if (characters.substr(0, length) == character)
            return true;
        characters.remove_prefix(length);
    }
    return false;
}

/// Is `piece` one of the pieces between single spaces?
bool hasPiece(std::string_view text, std::string_view piece) {
    for (auto at = text.find(piece); at != std::string_view::npos; at = text.find(piece, at + 1)) {
        const auto end = at + piece.size();
        if ((at == 0 || text[at - 1] == ' ') && (end == text.size() || text[end] == ' '))
            return true;
    }
    return false;
}

} // namespace

std::string stringWithSubstitute(std::string_view text, std::string_view substitute, std::string_view characters) {
    std::string result;
    while (!text.empty()) {
        const auto character = text.substr(0, characterLength(text));
        result += containsCharacter(characters, character) ? substitute : character;
        text.remove_prefix(character.size());
    }
    return result;
}

std::string_view trimWhiteSpace(std::string_view text) {
    while (const auto length = spaceLength([&](std::string_view space) { return text.starts_with(space); }))
        text.remove_prefix(length);
    while (const auto length = spaceLength([&](std::string_view space) { return text.ends_with(space); }))
        text.remove_suffix(length);
    return text;
}

bool stringIsEmpty(std::optional<std::string_view> text) { return !text || trimWhiteSpace(*text).empty(); }

std::string_view ellipsizeAfterNWords(std::string_view text, std::size_t count) {
    if (count == 0)
        return {};
    std::size_t end = text.find(' ');
    for (; --count > 0 && end != std::string_view::npos; end = text.find(' ', end + 1)) {
    }
    return text.substr(0, end);
}

std::vector<std::string_view> piecesBetweenSpaces(std::string_view text) {
    std::vector<std::string_view> pieces;
    for (;;) {
        const auto space = text.find(' ');
        pieces.push_back(text.substr(0, space));
        if (space == std::string_view::npos)
            return pieces;
        text.remove_prefix(space + 1);
    }
}

int compareByWords(std::string_view text, std::string_view other) {
    const bool isSubset =
        std::ranges::all_of(piecesBetweenSpaces(text), [&](std::string_view piece) { return hasPiece(other, piece); });
    return isSubset ? 0 : -1;
}

std::string stringByDeletingRealPathExtension(std::string_view name, std::string_view folder,
                                              const FileManager& fileManager) {
    const auto extension = pathExtension(name);
    if (extension.empty() || fileManager.directoryExistsAtPath(joinedPath(folder, name)))
        return std::string(name);
    return std::string(name.substr(0, name.rfind(extension) - 1));
}

std::string lowercaseString(std::string_view text) {
    std::string lower(text);
    const auto isAscii = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
    if (!std::ranges::all_of(text, isAscii) && validUtf8(text) == text) {
        lower.clear();
        icu::UnicodeString::fromUTF8(text).toLower(icu::Locale::getRoot()).toUTF8String(lower);
        return lower;
    }
    for (char& letter : lower) {
        if (letter >= 'A' && letter <= 'Z')
            letter = static_cast<char>(letter - 'A' + 'a');
    }
    return lower;
}

std::string stripHTML(std::string_view text) {
    std::string result;
    int depth = 0;
    for (const char c : text) {
        if (c == '<') {
            ++depth;
        } else if (c == '>') {
            if (--depth == 0)
                result += ' ';
        } else if (depth == 0) {
            result += c;
        }
    }
    return result;
}

std::string stringByEncodingURLEscapes(std::string_view text) {
    std::string result;
    for (const char c : text) {
        if (c >= 0x20 && c <= 0x7E) {
            result += c == '+' ? ' ' : c;
        } else {
            const auto byte = static_cast<unsigned char>(c);
            result += {'%', intToHex(byte >> 4), intToHex(byte & 15)};
        }
    }
    return result;
}

std::optional<std::string> stringByDecodingURLEscapes(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char c = text[i];
        if (c == '%') {
            const auto digits = text.substr(i + 1, 2);
            const int high = digits.size() == 2 ? hexToInt(digits[0]) : -1;
            const int low = digits.size() == 2 ? hexToInt(digits[1]) : -1;
            c = high < 0 || low < 0 ? '?' : static_cast<char>(high * 16 + low);
            i += 2;
        } else if (c == ' ' || c == '+') {
            c = c == ' ' ? '+' : ' ';
        }
        if (static_cast<unsigned char>(c) > 0x7F)
            return std::nullopt;
        result += c;
    }
    return result;
}

char intToHex(int value) { return value >= 0 && value < 16 ? "0123456789abcdef"[value] : '\0'; }

int hexToInt(char digit) {
    if (digit >= '0' && digit <= '9')
        return digit - '0';
    if (digit >= 'a' && digit <= 'f')
        return digit - 'a' + 10;
    if (digit >= 'A' && digit <= 'F')
        return digit - 'A' + 10;
    return -1;
}

} // namespace sweeply
