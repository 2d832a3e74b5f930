#pragma once

#include <optional>
#include <string_view>

namespace sweeply {

/// The value of an enumeration, up to `last`, for which its nameOf() has this word; nothing for another word.
template<typename Value>
[[nodiscard]] std::optional<Value> valueNamed(std::string_view word, Value last) {
    for (int value = 0; value <= static_cast<int>(last); ++value) {
        if (nameOf(static_cast<Value>(value)) == word)
            return static_cast<Value>(value);
    }
    return std::nullopt;
}

} // namespace sweeply
