#pragma once

#include "cli/Terminal.h"
#include "engine/tree/Evidence.h"

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

enum class ColorWhen { Auto, Always, Never };

/// How texts for people are made up on standard output. In every style strangers' names are escaped.
struct TextStyle {
    /// Lists are padded to columns; else a tab stands between two, for scripts.
    bool alignsColumns = false;
    /// Of a long run of items only the largest are shown.
    bool foldsLongRuns = false;
    bool hasColor = false;
    /// Below each item stands why it is listed.
    bool tellsReasons = false;

    /// What `terminal` and the environment (NO_COLOR, TERM) ask for where the person leaves it to them.
    [[nodiscard]] static TextStyle of(const Terminal& terminal, ColorWhen color);

    /// Our own text at the head of a list.
    [[nodiscard]] std::string heading(std::string_view text) const;
    /// A stranger's name; one that is a path stands out against its folder.
    [[nodiscard]] std::string name(std::string_view name) const;
};

/// What is to be said below an item that is listed for this reason: why, where the style tells reasons, and why it is
/// unchecked, where it is for one of them. Empty for nothing.
[[nodiscard]] std::string noteOn(const TextStyle& style, const Evidence& evidence, bool isChecked);

/// One line for each row, its cells escaped.
void printColumns(std::ostream& output, const TextStyle& style, const std::vector<std::vector<std::string>>& rows);

/// A size in a column of its own, then the text, which is to be escaped already.
void printSized(std::ostream& output, std::string_view size, std::string_view text);

} // namespace sweeply
