#include "platform/Localization.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <type_traits>

namespace sweeply {

namespace {

/// One piece of a format: plain text or a placeholder.
struct Piece {
    std::string_view text; ///< as written
    char kind = 0;         ///< '@', 'i', 'f', '%'; 0 for plain text
    bool padsWithZeros = false;
    std::size_t width = 0;
    int precision = 6;
};

bool isDigit(char character) { return character >= '0' && character <= '9'; }

/// At most two digits: no text of ours is padded further, and no catalogue may ask for gigabytes.
unsigned takeNumber(std::string_view format, std::size_t& position) {
    unsigned number = 0;
    for (int digits = 0; digits < 2 && position < format.size() && isDigit(format[position]); ++digits)
        number = number * 10 + static_cast<unsigned>(format[position++] - '0');
    return number;
}

/// Cuts the next piece off the front of `format`, which is not empty. What begins like a placeholder and is none is
/// text.
Piece takePiece(std::string_view& format) {
    Piece piece;
    std::size_t position = 0;
    if (format.front() == '%') {
        ++position;
        piece.padsWithZeros = position < format.size() && format[position] == '0';
        piece.width = takeNumber(format, position);
        if (position < format.size() && format[position] == '.') {
            ++position;
            piece.precision = static_cast<int>(takeNumber(format, position));
        }
        if (position < format.size() && std::string_view("@if%").find(format[position]) != std::string_view::npos)
            piece.kind = format[position++];
    } else {
        position = std::min(format.find('%'), format.size());
    }
    piece.text = format.substr(0, position);
    format.remove_prefix(position);
    return piece;
}

/// The placeholders that take an argument, a letter each.
std::string kindsOf(std::string_view format) {
    std::string kinds;
    while (!format.empty())
        if (const Piece piece = takePiece(format); piece.kind != 0 && piece.kind != '%')
            kinds += piece.kind;
    return kinds;
}

std::string fixed(double number, int precision) {
    // Not printf: its decimal point is the process's locale's.
    std::array<char, 512> buffer;
    const auto end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::fixed, precision);
    return {buffer.data(), end.ptr};
}

std::optional<std::string> filled(const Piece& piece, const FormatArgument& argument) {
    return std::visit(
        [&](auto value) -> std::optional<std::string> {
            using T = decltype(value);
            if constexpr (std::is_same_v<T, std::string_view>)
                return piece.kind == '@' ? std::optional(std::string(value)) : std::nullopt;
            else if constexpr (std::is_same_v<T, double>)
                return piece.kind == 'f' ? std::optional(fixed(value, piece.precision)) : std::nullopt;
            else
                return piece.kind == 'i' ? std::optional(std::to_string(value)) : std::nullopt;
        },
        argument.storage());
}

std::string padded(std::string text, const Piece& piece) {
    if (text.size() >= piece.width || piece.kind == '@')
        return text;
    const std::size_t missing = piece.width - text.size();
    const std::size_t afterSign = piece.padsWithZeros && text.starts_with('-') ? 1 : 0;
    return text.insert(afterSign, missing, piece.padsWithZeros ? '0' : ' ');
}

} // namespace

std::string formatText(std::string_view format, std::initializer_list<FormatArgument> arguments) {
    std::string result;
    const FormatArgument* next = arguments.begin();
    while (!format.empty()) {
        const Piece piece = takePiece(format);
        if (piece.kind == '%') {
            result += '%';
        } else if (piece.kind == 0 || next == arguments.end()) {
            result += piece.text;
        } else {
            const auto text = filled(piece, *next++);
            result += text ? padded(*text, piece) : std::string(piece.text);
        }
    }
    return result;
}

bool haveSamePlaceholders(std::string_view format, std::string_view other) { return kindsOf(format) == kindsOf(other); }

} // namespace sweeply
