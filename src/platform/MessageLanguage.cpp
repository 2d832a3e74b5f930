#include "platform/MessageLanguage.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <string_view>

namespace sweeply {

namespace {

std::string_view environment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

/// "de_DE" and "@euro" of "de_DE.UTF-8@euro".
struct LocaleName {
    std::string_view language;
    std::string_view modifier;
};

LocaleName parsed(std::string_view locale) {
    const auto modifier = std::min(locale.find('@'), locale.size());
    return {locale.substr(0, std::min(locale.find('.'), modifier)), locale.substr(modifier)};
}

bool isNoLanguage(std::string_view language) { return language == "C" || language == "POSIX"; }

/// A name is part of a path.
bool isName(std::string_view text) {
    return !text.empty() && std::ranges::all_of(text, [](unsigned char character) {
        return std::isalnum(character) || character == '_' || character == '-' || character == '@';
    });
}

} // namespace

std::vector<std::string> wantedCatalogues() {
    std::string_view locale;
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        if (locale.empty())
            locale = environment(name);
    }
    if (locale.empty() || locale == "C" || locale == "POSIX")
        return {};
    std::string_view list = environment("LANGUAGE");
    if (list.empty())
        list = locale;
    std::vector<std::string> names;
    const auto add = [&](std::string name) {
        if (isName(name) && std::ranges::find(names, name) == names.end())
            names.push_back(std::move(name));
    };
    while (!list.empty()) {
        const auto end = std::min(list.find(':'), list.size());
        const auto [language, modifier] = parsed(list.substr(0, end));
        list.remove_prefix(std::min(end + 1, list.size()));
        if (isNoLanguage(language))
            break;
        const auto alone = language.substr(0, language.find('_'));
        for (const auto& ending : {std::string(modifier), std::string()}) {
            add(std::string(language) + ending);
            add(std::string(alone) + ending);
        }
        if (alone == "en")
            break;
    }
    return names;
}

} // namespace sweeply
