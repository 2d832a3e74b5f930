#pragma once

#include "engine/PreferenceKey.h"
#include "formats/PropertyList.h"
#include "platform/Error.h"

#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

/// Every documented key of the program's preferences, of whatever part of it.
[[nodiscard]] std::vector<PreferenceKey> documentedPreferences();

/// The key of that name; NotFound, with a text that lists them all.
[[nodiscard]] Result<PreferenceKey> preferenceNamed(std::string_view name);

/// What a person writes for a value of that key: "yes" or "no", a number, a text, texts with commas between them, or
/// "NAME=yes" with commas between. Other dictionaries cannot be written so. An error names the key and the kind of
/// value that it takes.
[[nodiscard]] Result<plist::Value> preferenceValue(const PreferenceKey& key, std::string_view text);

/// The name of the type for people: "boolean", "number", "text", "list", "switches", "dictionary".
[[nodiscard]] std::string_view nameOf(PreferenceKey::Type type);

/// Is the stored value of the type that the key is documented with?
[[nodiscard]] bool fits(const PreferenceKey& key, const plist::Value& value);

} // namespace sweeply
