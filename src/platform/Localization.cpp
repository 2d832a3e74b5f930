#include "platform/Localization.h"

#include "platform/MessageCatalogue.h"
#include "platform/MessageLanguage.h"

#include <clocale>
#include <fstream>
#include <iterator>
#include <optional>

namespace sweeply {

namespace {

/// What msgfmt puts between a context and its key.
constexpr char kContextEnd = '\004';

/// Of the process; set before threads start.
struct Messages {
    std::string language;
    std::optional<MessageCatalogue> catalogue;
};

Messages& messages() {
    static Messages ours;
    return ours;
}

std::string translated(std::string_view entry, std::string_view key) {
    const auto& catalogue = messages().catalogue;
    return std::string(catalogue ? catalogue->find(entry).value_or(key) : key);
}

} // namespace

void bindTextDomain(const std::string& directory) {
    // Only these two: numbers must stay as programs write them. Where the system has not generated the locale, names
    // are still UTF-8.
    if (!std::setlocale(LC_CTYPE, ""))
        std::setlocale(LC_CTYPE, "C.UTF-8");
    std::setlocale(LC_MESSAGES, "");
    messages() = {};
    for (const auto& language : wantedCatalogues()) {
        std::ifstream file(directory + "/" + language + "/LC_MESSAGES/sweeply.mo", std::ios::binary);
        auto catalogue = MessageCatalogue::parse(std::string(std::istreambuf_iterator<char>(file), {}));
        if (!catalogue)
            continue;
        messages() = {language, std::move(catalogue)};
        return;
    }
}

std::string messageLanguage() { return messages().language; }

std::string localizedString(std::string_view key) { return translated(key, key); }

std::string localizedButton(std::string_view key) {
    return translated(std::string("Buttons") + kContextEnd + std::string(key), key);
}

std::string localizedFormat(std::string_view key, std::initializer_list<FormatArgument> arguments) {
    const std::string translation = localizedString(key);
    return formatText(haveSamePlaceholders(key, translation) ? translation : key, arguments);
}

} // namespace sweeply
