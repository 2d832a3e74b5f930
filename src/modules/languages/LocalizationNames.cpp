#include "modules/languages/LocalizationNames.h"

#include "modules/languages/LanguageKeepList.h"
#include "platform/Languages.h"
#include "platform/TargetPath.h"

#include <utility>

namespace sweeply {

namespace {

constexpr std::string_view kExtension = "lproj";

/// Folders that look like those of a language and hold what every language needs.
bool isNoLanguage(std::string_view code) { return code == "base" || code == "default"; }

} // namespace

bool LocalizationNames::isLocalization(std::string_view name) { return pathExtension(name) == kExtension; }

std::string LocalizationNames::shortLanguageNameFromDirectoryTwoLetters(std::string_view path) {
    const auto name = lastPathComponent(path);
    const auto extension = name.find("." + std::string(kExtension));
    if (extension == std::string_view::npos)
        return std::string(path);
    const auto prefix = name.substr(0, extension);
    return canonicalLanguageIdentifier(prefix).value_or(std::string(prefix));
}

const std::string& LocalizationNames::unwantedLanguage(std::string_view folderName) {
    const std::lock_guard lock(m_mutex);
    const auto [known, isNew] = m_codes.try_emplace(std::string(folderName));
    if (isNew) {
        auto code = shortLanguageNameFromDirectoryTwoLetters(folderName);
        if (!isNoLanguage(code) && !m_keepList.shouldILeaveThisLanguage(code))
            known->second = std::move(code);
    }
    return known->second;
}

} // namespace sweeply
