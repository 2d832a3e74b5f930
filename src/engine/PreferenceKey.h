#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <variant>

namespace sweeply {

class UserDefaults;

/// One documented key of the program's preferences. Whoever owns a key keeps it in a table of these.
struct PreferenceKey {
    enum class Type : std::uint8_t { Boolean, Number, Text, TextArray, Switches, Dictionary };
    struct EmptyArray {};

    std::string_view name;
    Type type;
    std::string_view meaning;
    /// What is written where the key is absent; a text is translated. Nothing: the key stays absent until it is set.
    std::variant<std::monostate, bool, std::string_view, EmptyArray> initially{};
};

/// Writes the initial value of every key that is absent and has one.
void registerDefaults(UserDefaults& defaults, std::span<const PreferenceKey> keys);

} // namespace sweeply
