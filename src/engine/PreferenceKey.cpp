#include "engine/PreferenceKey.h"

#include "platform/Localization.h"
#include "platform/UserDefaults.h"

namespace sweeply {

void registerDefaults(UserDefaults& defaults, std::span<const PreferenceKey> keys) {
    for (const auto& key : keys) {
        if (defaults.objectForKey(key.name))
            continue;
        if (const auto* truth = std::get_if<bool>(&key.initially))
            defaults.setBool(key.name, *truth);
        else if (const auto* text = std::get_if<std::string_view>(&key.initially))
            defaults.setString(key.name, localizedString(*text));
        else if (std::holds_alternative<PreferenceKey::EmptyArray>(key.initially))
            defaults.setObject(key.name, plist::Array());
    }
}

} // namespace sweeply
