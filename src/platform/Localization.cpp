#include "platform/Localization.h"

#include <clocale>
#include <libintl.h>

namespace sweeply {

namespace {

constexpr const char* kDomain = "sweeply";
/// What gettext puts between a context and its key.
constexpr char kContextEnd = '\004';

std::string translated(const std::string& entry, std::string_view key) {
    // gettext gives its argument back when it knows nothing better. The empty key is the catalogue's own header.
    const char* text = key.empty() ? entry.c_str() : dgettext(kDomain, entry.c_str());
    return text == entry.c_str() ? std::string(key) : text;
}

} // namespace

void bindTextDomain(const std::string& directory) {
    // Only these two: numbers must stay as programs write them.
    std::setlocale(LC_CTYPE, "");
    std::setlocale(LC_MESSAGES, "");
    bindtextdomain(kDomain, directory.c_str());
    bind_textdomain_codeset(kDomain, "UTF-8");
}

std::string localizedString(std::string_view key) { return translated(std::string(key), key); }

std::string localizedButton(std::string_view key) {
    const std::string entry = std::string("Buttons") + kContextEnd + std::string(key);
    return translated(entry, key);
}

std::string localizedFormat(std::string_view key, std::initializer_list<FormatArgument> arguments) {
    const std::string translation = localizedString(key);
    return formatText(haveSamePlaceholders(key, translation) ? translation : key, arguments);
}

} // namespace sweeply
