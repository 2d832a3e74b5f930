#include "platform/Suggestion.h"

#include <algorithm>
#include <utility>

namespace sweeply {

namespace {

/// Longer words are nothing that somebody mistyped.
constexpr std::size_t kLongestWord = 64;
/// One slip for so many letters.
constexpr std::size_t kLettersPerSlip = 3;

char folded(char letter) { return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter; }

} // namespace

std::size_t editDistance(std::string_view text, std::string_view other) {
    // Row by row of the table of all beginnings; a swap looks back by two rows.
    std::vector<std::size_t> beforeLast;
    std::vector<std::size_t> last(other.size() + 1);
    for (std::size_t column = 0; column < last.size(); ++column)
        last[column] = column;
    for (std::size_t row = 1; row <= text.size(); ++row) {
        std::vector<std::size_t> current(other.size() + 1, row);
        const char letter = folded(text[row - 1]);
        for (std::size_t column = 1; column <= other.size(); ++column) {
            const char otherLetter = folded(other[column - 1]);
            current[column] = std::min(
                {last[column] + 1, current[column - 1] + 1, last[column - 1] + (letter == otherLetter ? 0 : 1)});
            const bool isSwapped =
                row > 1 && column > 1 && letter == folded(other[column - 2]) && folded(text[row - 2]) == otherLetter;
            if (isSwapped)
                current[column] = std::min(current[column], beforeLast[column - 2] + 1);
        }
        beforeLast = std::exchange(last, std::move(current));
    }
    return last.back();
}

std::string suggestionFor(std::string_view typed, const std::vector<std::string>& known) {
    if (typed.size() > kLongestWord)
        return {};
    const std::string* nearest = nullptr;
    std::size_t allowed = std::max<std::size_t>(typed.size() / kLettersPerSlip, 1);
    for (const auto& name : known) {
        if (name.size() > kLongestWord)
            continue;
        const std::size_t distance = editDistance(typed, name);
        if (distance <= allowed && (!nearest || distance < allowed)) {
            nearest = &name;
            allowed = distance;
        }
    }
    return nearest ? " (did you mean '" + *nearest + "'?)" : std::string();
}

} // namespace sweeply
