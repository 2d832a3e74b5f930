#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

class FileManager;

/// Small operations on UTF-8 text. Bytes that are no valid UTF-8 pass through unchanged.

/// `text` with every character that occurs in `characters` replaced.
[[nodiscard]] std::string stringWithSubstitute(std::string_view text, std::string_view substitute,
                                               std::string_view characters);
/// The part of `text` without white space and line ends, of any script, at its ends.
[[nodiscard]] std::string_view trimWhiteSpace(std::string_view text);
/// True for nothing, the empty text and white space only.
[[nodiscard]] bool stringIsEmpty(std::optional<std::string_view> text);
/// The first `count` pieces between single spaces. No ellipsis is added.
[[nodiscard]] std::string_view ellipsizeAfterNWords(std::string_view text, std::size_t count);
[[nodiscard]] std::vector<std::string_view> piecesBetweenSpaces(std::string_view text);
/// 0 if every piece of `text` between single spaces is one of `other`, else -1. A test for a subset, not an order.
[[nodiscard]] int compareByWords(std::string_view text, std::string_view other);
/// `name` without its last extension, unless it is a folder in `folder`: a bundle keeps its own.
[[nodiscard]] std::string stringByDeletingRealPathExtension(std::string_view name, std::string_view folder,
                                                            const FileManager& fileManager);

/// Every letter of any script as a small one.
[[nodiscard]] std::string lowercaseString(std::string_view text);

/// Takes out what stands in angle brackets and leaves a space for it. A ">" too many swallows the text up to the next
/// "<".
[[nodiscard]] std::string stripHTML(std::string_view text);

/// Bytes outside of printable ASCII as "%" and two digits; "+" as a space.
[[nodiscard]] std::string stringByEncodingURLEscapes(std::string_view text);
/// The reverse, except that a space becomes "+" as well and a malformed escape "?". Nothing if the result is not ASCII.
[[nodiscard]] std::optional<std::string> stringByDecodingURLEscapes(std::string_view text);

/// The lower-case digit of 0 to 15, else NUL.
[[nodiscard]] char intToHex(int value);
/// The value of a digit in either case, else -1.
[[nodiscard]] int hexToInt(char digit);

} // namespace sweeply
