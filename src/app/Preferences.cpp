#include "app/Preferences.h"

#include "app/ModuleCatalog.h"
#include "engine/CoordinatorPreferences.h"
#include "modules/ignorelist/IgnoreListPreferences.h"
#include "modules/languages/LanguageKeepList.h"
#include "modules/uninstaller/UninstallPreferences.h"
#include "platform/Suggestion.h"

#include <algorithm>
#include <charconv>

namespace sweeply {

namespace {

Failure wrongValue(const PreferenceKey& key, std::string expected) {
    return Failure(Error{ErrorKind::WrongType, std::string(key.name), "takes " + std::move(expected)});
}

std::vector<std::string> separated(std::string_view text) {
    std::vector<std::string> parts;
    while (!text.empty()) {
        const auto comma = text.find(',');
        if (comma != 0)
            parts.emplace_back(text.substr(0, comma));
        text = comma == std::string_view::npos ? std::string_view() : text.substr(comma + 1);
    }
    return parts;
}

std::optional<bool> truthIn(std::string_view text) {
    if (text == "yes" || text == "true" || text == "1")
        return true;
    if (text == "no" || text == "false" || text == "0")
        return false;
    return std::nullopt;
}

Result<plist::Value> switchesIn(const PreferenceKey& key, std::string_view text) {
    std::vector<plist::Dictionary::Member> members;
    for (const auto& part : separated(text)) {
        const auto sign = part.find('=');
        const auto truth = sign == std::string::npos ? std::nullopt : truthIn(std::string_view(part).substr(sign + 1));
        if (!truth || sign == 0)
            return wrongValue(key, "'NAME=yes' and 'NAME=no', with commas between them");
        members.emplace_back(part.substr(0, sign), *truth);
    }
    return plist::Value(plist::Dictionary(std::move(members)));
}

} // namespace

std::vector<PreferenceKey> documentedPreferences() {
    std::vector<PreferenceKey> keys(coordinator::kPreferences.begin(), coordinator::kPreferences.end());
    for (const auto& row : scanModules()) {
        for (const auto& part : row.switches)
            keys.push_back({part.defaultsName, PreferenceKey::Type::Boolean, "the module takes part in scans",
                            part.isOnByDefault});
    }
    keys.insert(keys.end(), ignorelist::kPreferences.begin(), ignorelist::kPreferences.end());
    keys.insert(keys.end(), languages::kPreferences.begin(), languages::kPreferences.end());
    keys.insert(keys.end(), uninstaller::kPreferences.begin(), uninstaller::kPreferences.end());
    return keys;
}

Result<PreferenceKey> preferenceNamed(std::string_view name) {
    const auto keys = documentedPreferences();
    if (const auto found = std::ranges::find(keys, name, &PreferenceKey::name); found != keys.end())
        return *found;
    std::vector<std::string> known;
    std::string list;
    for (const auto& key : keys) {
        known.emplace_back(key.name);
        list += (list.empty() ? "" : ", ") + known.back();
    }
    return Failure(Error{ErrorKind::NotFound, std::string(name),
                         "no such preference" + suggestionFor(name, known) + "; there are " + list});
}

Result<plist::Value> preferenceValue(const PreferenceKey& key, std::string_view text) {
    switch (key.type) {
    case PreferenceKey::Type::Boolean:
        if (const auto truth = truthIn(text))
            return plist::Value(*truth);
        return wrongValue(key, "'yes' or 'no'");
    case PreferenceKey::Type::Number: {
        std::uint64_t number = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
        if (error != std::errc() || end != text.data() + text.size())
            return wrongValue(key, "a whole number");
        return plist::Value(number);
    }
    case PreferenceKey::Type::Text:
        return plist::Value(text);
    case PreferenceKey::Type::TextArray:
        return plist::Value(plist::arrayOf(separated(text)));
    case PreferenceKey::Type::Switches:
        return switchesIn(key, text);
    case PreferenceKey::Type::Dictionary:
        break;
    }
    return wrongValue(key, "no value here; other commands change it");
}

std::string_view nameOf(PreferenceKey::Type type) {
    switch (type) {
    case PreferenceKey::Type::Boolean:
        return "boolean";
    case PreferenceKey::Type::Number:
        return "number";
    case PreferenceKey::Type::Text:
        return "text";
    case PreferenceKey::Type::TextArray:
        return "list";
    case PreferenceKey::Type::Switches:
        return "switches";
    case PreferenceKey::Type::Dictionary:
        break;
    }
    return "dictionary";
}

bool fits(const PreferenceKey& key, const plist::Value& value) {
    switch (key.type) {
    case PreferenceKey::Type::Boolean:
        return value.asBool().has_value();
    case PreferenceKey::Type::Number:
        return value.asUnsigned().has_value();
    case PreferenceKey::Type::Text:
        return value.asString() != nullptr;
    case PreferenceKey::Type::TextArray:
        return value.asArray() != nullptr;
    case PreferenceKey::Type::Switches:
    case PreferenceKey::Type::Dictionary:
        break;
    }
    return value.asDictionary() != nullptr;
}

} // namespace sweeply
