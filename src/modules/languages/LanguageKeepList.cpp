#include "modules/languages/LanguageKeepList.h"

#include "formats/PropertyList.h"
#include "platform/Languages.h"
#include "platform/UserDefaults.h"

#include <algorithm>
#include <utility>

namespace sweeply {

namespace {

bool isEnglish(std::string_view code) { return code == "en" || code == "En" || code == "english" || code == "English"; }

std::optional<bool> storedChoice(const std::optional<plist::Value>& stored, std::string_view code) {
    const auto* value = stored ? stored->find(code) : nullptr;
    return value ? value->asBool() : std::nullopt;
}

} // namespace

std::string languageNameForPeople(const std::string& code) { return displayNameOfLanguage(code).value_or(code); }

LanguageKeepList::LanguageKeepList(UserDefaults& defaults, PreferredLanguages appleLanguages)
    : m_defaults(defaults), m_appleLanguages(std::move(appleLanguages)) {}

Result<std::vector<std::string>> LanguageKeepList::preferredLanguages() const {
    const auto languages = m_appleLanguages();
    if (!languages)
        return languages;
    std::vector<std::string> codes;
    for (const auto& language : *languages) {
        auto code = canonicalLanguageIdentifier(language).value_or(language);
        if (!code.empty() && std::ranges::find(codes, code) == codes.end())
            codes.push_back(std::move(code));
    }
    return codes;
}

void LanguageKeepList::updateAppleLanguageList() {
    const auto stored = m_defaults.objectForKey(languages::kLanguagesToLeave);
    const auto codes = preferredLanguages();
    if (!codes)
        return;
    m_rows.clear();
    for (const auto& code : *codes)
        m_rows.push_back({storedChoice(stored, code).value_or(true), code, languageNameForPeople(code)});
    store();
}

std::string LanguageKeepList::valueForColumn(std::string_view column, std::size_t row) const {
    const Row& shown = m_rows.at(row);
    if (column == "Enabled")
        return shown.enabled ? "1" : "0";
    if (column == "LocalizedLanguageName")
        return shown.displayLanguageName.size() > 1 ? shown.displayLanguageName : shown.shortLanguageName;
    return "Unknown";
}

void LanguageKeepList::toggle(std::size_t row) {
    if (m_rows.at(row).shortLanguageName == "en")
        return;
    m_rows[row].enabled = !m_rows[row].enabled;
    store();
}

void LanguageKeepList::store() {
    std::vector<plist::Dictionary::Member> members;
    for (const auto& row : m_rows)
        members.emplace_back(row.shortLanguageName, row.enabled);
    const plist::Value choice(plist::Dictionary(std::move(members)));
    if (m_defaults.objectForKey(languages::kLanguagesToLeave) == choice)
        return;
    m_defaults.setObject(languages::kLanguagesToLeave, choice);
}

bool LanguageKeepList::shouldILeaveThisLanguage(std::string_view code) const {
    return isEnglish(code) || storedChoice(m_defaults.objectForKey(languages::kLanguagesToLeave), code).value_or(false);
}

Result<std::vector<std::string>> LanguageKeepList::nativeLanguages() const {
    const auto preferred = preferredLanguages();
    if (!preferred)
        return preferred;
    std::vector<std::string> codes;
    for (const auto& code : *preferred) {
        if (isEnglish(code))
            break;
        if (!shouldILeaveThisLanguage(code))
            codes.push_back(code);
    }
    return codes;
}

} // namespace sweeply
