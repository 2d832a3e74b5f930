#include "app/Preferences.h"
#include "cli/Commands.h"
#include "cli/JsonOutput.h"
#include "cli/Session.h"

#include <iostream>
#include <nlohmann/json.hpp>

namespace sweeply {

namespace {

Json jsonOf(const plist::Value& value) {
    if (const auto* text = value.asString())
        return validUtf8(*text);
    if (const auto* array = value.asArray()) {
        Json list = Json::array();
        for (const auto& element : *array)
            list.push_back(jsonOf(element));
        return list;
    }
    if (const auto* dictionary = value.asDictionary()) {
        Json object = Json::object();
        for (const auto& [key, member] : dictionary->members())
            object[validUtf8(key)] = jsonOf(member);
        return object;
    }
    if (const auto* truth = std::get_if<bool>(&value.storage()))
        return *truth;
    if (const auto number = value.asUnsigned())
        return *number;
    if (const auto number = value.asDouble())
        return *number;
    return nullptr;
}

/// As preferenceValue reads it, where that can be read at all.
std::string textOf(const PreferenceKey& key, const plist::Value& value) {
    const Json json = jsonOf(value);
    if (key.type == PreferenceKey::Type::Switches) {
        std::string list;
        for (const auto& [name, truth] : json.items())
            list += (list.empty() ? "" : ",") + name + (truth == true ? "=yes" : "=no");
        return list;
    }
    if (json.is_string())
        return json.get<std::string>();
    if (json.is_boolean())
        return json.get<bool>() ? "yes" : "no";
    if (!json.is_array())
        return json.dump();
    std::string list;
    for (const auto& element : plist::textsOf(value))
        list += (list.empty() ? "" : ",") + element;
    return list;
}

/// The stored value in the type that is documented; what somebody wrote there in another one is as good as absent.
std::optional<plist::Value> stored(Session& session, const PreferenceKey& key) {
    auto value = session.application().defaults().objectForKey(key.name);
    if (!value || !fits(key, *value))
        return std::nullopt;
    if (key.type == PreferenceKey::Type::Boolean)
        return plist::Value(*value->asBool());
    return value;
}

void print(Session& session, const std::vector<PreferenceKey>& keys) {
    if (session.commandLine().wantsJson) {
        Json preferences = Json::object();
        for (const auto& key : keys) {
            const auto value = stored(session, key);
            preferences[std::string(key.name)] = {{"type", nameOf(key.type)},
                                                  {"value", value ? jsonOf(*value) : Json(nullptr)},
                                                  {"meaning", key.meaning}};
        }
        session.print({{"target", targetJson(session.application())}, {"preferences", preferences}});
        return;
    }
    std::vector<std::vector<std::string>> rows;
    for (const auto& key : keys) {
        const auto value = stored(session, key);
        if (session.commandLine().operands.empty())
            rows.push_back({std::string(key.name), value ? textOf(key, *value) : std::string("-")});
        else if (value)
            rows.push_back({textOf(key, *value)});
    }
    printColumns(std::cout, session.style(), rows);
}

} // namespace

ExitCode runPrefs(Session& session) {
    const auto& operands = session.commandLine().operands;
    if (operands.empty()) {
        print(session, documentedPreferences());
        return ExitCode::Done;
    }
    const auto key = preferenceNamed(operands.front());
    if (!key) {
        session.complain(key.error().message());
        return ExitCode::Usage;
    }
    if (operands.size() > 1) {
        auto value = preferenceValue(*key, operands[1]);
        if (!value) {
            session.complain(value.error().message());
            return ExitCode::Usage;
        }
        auto& defaults = session.application().defaults();
        defaults.setObject(key->name, *std::move(value));
        if (const auto saved = defaults.synchronize(); !saved) {
            session.complain(saved.error().message());
            return ExitCode::Incomplete;
        }
        if (!session.commandLine().wantsJson)
            return ExitCode::Done;
    }
    print(session, {*key});
    return ExitCode::Done;
}

} // namespace sweeply
