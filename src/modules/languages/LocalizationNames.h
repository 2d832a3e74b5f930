#pragma once

#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>

namespace sweeply {

class LanguageKeepList;

/// Which localizations may go, by their names: applications have the same ones again and again, so each name is looked
/// up once. Thread-safe; what the user keeps must not change meanwhile.
class LocalizationNames final {
  public:
    /// `keepList` outlives this.
    explicit LocalizationNames(const LanguageKeepList& keepList) : m_keepList(keepList) {}

    [[nodiscard]] static bool isLocalization(std::string_view name);
    /// The canonical code of the language that a folder "*.lproj" is for; of any other path the path itself.
    [[nodiscard]] static std::string shortLanguageNameFromDirectoryTwoLetters(std::string_view path);

    /// The code of the language that a folder of this name is for; empty where it stays.
    [[nodiscard]] const std::string& unwantedLanguage(std::string_view folderName);

  private:
    const LanguageKeepList& m_keepList;
    std::mutex m_mutex;
    std::unordered_map<std::string, std::string> m_codes; ///< by folder name; guarded by m_mutex; nothing leaves it
};

} // namespace sweeply
