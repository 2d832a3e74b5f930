#pragma once

#include <string>
#include <string_view>

namespace sweeply {

/// A stranger's text as it may stand in one line for people, on a terminal, in a file or in the system log. Nothing in
/// it breaks the line, commands a terminal or turns the direction of reading, and every byte can be told from it:
///
///   \\                a backslash
///   \n \r \t          line end, return, tab
///   \x1b              any other control character below U+0080, and each byte that is no UTF-8
///   \u0085 \u202e     control characters from U+0080 on, line and paragraph separators, and the marks, embeddings,
///                     overrides and isolates that turn the direction of reading
///
/// Shells read it back between $' and '.
[[nodiscard]] std::string escapedForDisplay(std::string_view text);

/// The same for a text of ours that holds names escaped already: its backslashes stay as they are.
[[nodiscard]] std::string escapedAroundNames(std::string_view text);

} // namespace sweeply
