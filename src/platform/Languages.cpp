#include "platform/Languages.h"

#include "platform/OldLanguageNames.h"

#include <algorithm>
#include <array>
#include <unicode/uloc.h>
#include <unicode/unistr.h>
#include <utility>

namespace sweeply {

namespace {

using Replacement = std::pair<std::string_view, std::string_view>;

/// Codes that were given up for others, and those of three letters that have a twin.
constexpr std::array kGivenUp{
    Replacement{"iw", "he"},  Replacement{"in", "id"},  Replacement{"ji", "yi"},  Replacement{"no", "nb"},
    Replacement{"scc", "sr"}, Replacement{"scr", "hr"}, Replacement{"alb", "sq"}, Replacement{"arm", "hy"},
    Replacement{"baq", "eu"}, Replacement{"bur", "my"}, Replacement{"chi", "zh"}, Replacement{"cze", "cs"},
    Replacement{"dut", "nl"}, Replacement{"fre", "fr"}, Replacement{"geo", "ka"}, Replacement{"ger", "de"},
    Replacement{"gre", "el"}, Replacement{"ice", "is"}, Replacement{"mac", "mk"}, Replacement{"mao", "mi"},
    Replacement{"may", "ms"}, Replacement{"per", "fa"}, Replacement{"rum", "ro"}, Replacement{"slo", "sk"},
    Replacement{"tib", "bo"}, Replacement{"wel", "cy"},
};
constexpr std::array kRegionsRenamed{
    Replacement{"UK", "GB"},
    Replacement{"TP", "TL"},
    Replacement{"CS", "RS"},
    Replacement{"YU", "RS"},
};
/// The script that nobody writes down, because the language has no other in use.
constexpr std::array kDefaultScripts{
    Replacement{"en", "Latn"}, Replacement{"de", "Latn"}, Replacement{"fr", "Latn"}, Replacement{"ru", "Cyrl"},
    Replacement{"ja", "Jpan"}, Replacement{"ko", "Kore"}, Replacement{"zh", "Hani"}, Replacement{"he", "Hebr"},
};
/// Whole identifiers whose region stands for a script.
constexpr std::array kWhole{
    Replacement{"en_US_POSIX", "en-US-POSIX"}, Replacement{"zh_CN", "zh-Hans"}, Replacement{"zh_HK", "zh-Hant"},
    Replacement{"zh_MO", "zh-Hant"},           Replacement{"zh_SG", "zh-Hans"}, Replacement{"zh_TW", "zh-Hant"},
};

template<std::size_t count>
std::string_view replacementIn(const std::array<Replacement, count>& table, std::string_view text) {
    const auto found = std::ranges::find(table, text, &Replacement::first);
    return found == table.end() ? std::string_view() : found->second;
}

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isDigit(char c) { return c >= '0' && c <= '9'; }
char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }
char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c; }

std::string inLowerCase(std::string_view text) {
    std::string changed(text);
    std::ranges::transform(changed, changed.begin(), lower);
    return changed;
}
std::string inUpperCase(std::string_view text) {
    std::string changed(text);
    std::ranges::transform(changed, changed.begin(), upper);
    return changed;
}
std::string capitalised(std::string_view text) { return inUpperCase(text.substr(0, 1)) + inLowerCase(text.substr(1)); }

/// "de" for "deu", and for what is no code of three letters the text itself.
std::string shortCode(const std::string& language) {
    if (const auto other = replacementIn(kGivenUp, language); !other.empty())
        return std::string(other);
    if (language.size() != 3)
        return language;
    std::array<char, ULOC_LANG_CAPACITY> code{};
    UErrorCode status = U_ZERO_ERROR;
    uloc_getLanguage(language.c_str(), code.data(), static_cast<int32_t>(code.size()), &status);
    if (U_FAILURE(status))
        return language;
    const std::string found(code.data());
    return found == "no" ? "nb" : found;
}

/// The parts of "zh-Hant-TW" and "zh_Hant_TW".
struct Parts {
    std::string language;
    std::string others;  ///< subtags that are kept as they are, each with "-" before it
    std::string script;  ///< "Hant"
    std::string variant; ///< a region after "-", as a part of the language: "GB"
    std::string region;  ///< a region after "_"
};

Parts split(std::string_view name) {
    Parts parts;
    const auto endOfLanguage = static_cast<std::size_t>(
        std::ranges::find_if(name, [](char c) { return !isLetter(c) && !isDigit(c); }) - name.begin());
    parts.language = shortCode(inLowerCase(name.substr(0, endOfLanguage)));
    for (std::size_t at = endOfLanguage; at < name.size() && parts.region.empty();) {
        const char separator = name[at];
        const std::size_t end = std::min(name.find_first_of("-_", at + 1), name.size());
        std::string_view tag = name.substr(at + 1, end - at - 1);
        at = end;
        // Past a region nothing counts, and what follows a point is a way of coding texts.
        if (separator == '_')
            tag = tag.substr(0, tag.find('.'));
        const bool isWord = !tag.empty() && std::ranges::all_of(tag, isLetter);
        const bool isNumber = tag.size() == 3 && std::ranges::all_of(tag, isDigit);
        if (separator == '_' && ((isWord && tag.size() == 2) || isNumber))
            parts.region = inUpperCase(tag);
        else if (isWord && tag.size() == 4 && parts.script.empty())
            parts.script = capitalised(tag);
        else if (separator == '-' && isWord && tag.size() == 2 && parts.variant.empty())
            parts.variant = inUpperCase(tag);
        else if (separator == '-')
            parts.others += "-" + inLowerCase(tag);
        else
            break;
    }
    return parts;
}

void updateRegion(Parts& parts) {
    if (parts.region == "CS" && (parts.language == "cs" || parts.language == "sk"))
        parts.region = "CZ";
    if (const auto renamed = replacementIn(kRegionsRenamed, parts.region); !renamed.empty())
        parts.region = renamed;
    if (parts.language == "sh" && (parts.region == "HR" || parts.region == "RS"))
        parts.language = parts.region == "HR" ? "hr" : "sr";
    if (!parts.variant.empty())
        parts.region.clear();
}

} // namespace

std::optional<std::string> canonicalLanguageIdentifier(std::string_view name) {
    if (std::ranges::any_of(name, [](char c) { return static_cast<unsigned char>(c) >= 0x80; }))
        return std::nullopt;
    const auto keywords = std::min(name.find('@'), name.size());
    const std::string_view identifier = name.substr(0, keywords);
    const auto withKeywords = [&](std::string_view code) { return std::string(code).append(name.substr(keywords)); };
    if (const auto code = codeForOldLanguageName(identifier); !code.empty())
        return withKeywords(code);
    if (const auto code = replacementIn(kWhole, identifier); !code.empty())
        return withKeywords(code);
    Parts parts = split(identifier);
    updateRegion(parts);
    std::string code = parts.language + parts.others;
    if (!parts.script.empty() && replacementIn(kDefaultScripts, parts.language) != parts.script)
        code += "-" + parts.script;
    for (const auto* region : {&parts.variant, &parts.region}) {
        if (!region->empty())
            code += "-" + *region;
    }
    return withKeywords(code);
}

std::optional<std::string> displayNameOfLanguage(const std::string& code) {
    UErrorCode status = U_ZERO_ERROR;
    icu::UnicodeString name;
    constexpr int32_t kLongest = 200;
    const int32_t length =
        uloc_getDisplayName(code.c_str(), uloc_getDefault(), name.getBuffer(kLongest), kLongest, &status);
    const bool isFound = U_SUCCESS(status) && status != U_USING_DEFAULT_WARNING && length <= kLongest;
    name.releaseBuffer(isFound ? length : 0);
    if (name.isEmpty())
        return std::nullopt;
    std::string text;
    return name.toUTF8String(text);
}

} // namespace sweeply
