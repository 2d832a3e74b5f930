#pragma once

#include "engine/PreferenceKey.h"
#include "platform/Error.h"

#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

class SystemLog;
class UserDefaults;

namespace languages {

inline constexpr const char* kLanguagesToLeave = "LanguagesToLeave";

inline constexpr std::array kPreferences{
    PreferenceKey{kLanguagesToLeave, PreferenceKey::Type::Switches,
                  "the preferred languages: whose localizations stay in applications"},
};

} // namespace languages

/// Which of the user's preferred languages keep their localizations. English always does; languages that the user does
/// not prefer never do. The stored choice may be asked on any thread; the rows belong to the main thread.
class LanguageKeepList final {
  public:
    /// Reads the user's preferred languages, the dearest first, as the system stores them.
    using PreferredLanguages = std::function<Result<std::vector<std::string>>()>;

    /// `defaults` outlives this.
    LanguageKeepList(UserDefaults& defaults, PreferredLanguages appleLanguages);

    /// One preferred language in the list that a person edits.
    struct Row {
        bool enabled = true;
        std::string shortLanguageName; ///< the code
        std::string displayLanguageName;
    };

    /// Builds the rows from what is stored now, and stores again exactly them: languages that are preferred no longer
    /// drop out. Where nobody can tell what the user prefers, everything stays as it is.
    void updateAppleLanguageList();
    [[nodiscard]] const std::vector<Row>& rows() const { return m_rows; }
    /// What a column shows of a row: "Enabled" as "1" or "0", "LocalizedLanguageName".
    [[nodiscard]] std::string valueForColumn(std::string_view column, std::size_t row) const;
    /// Flips a row and stores the list. English cannot be flipped.
    void toggle(std::size_t row);

    /// Do the localizations of the language with this canonical code stay?
    [[nodiscard]] bool shouldILeaveThisLanguage(std::string_view code) const;
    /// The languages that the user prefers to English and that are set to be removed: a mistake, most likely.
    /// An error where nobody can tell what the user prefers.
    [[nodiscard]] Result<std::vector<std::string>> nativeLanguages() const;

  private:
    /// Canonical and each once.
    [[nodiscard]] Result<std::vector<std::string>> preferredLanguages() const;
    void store();

    UserDefaults& m_defaults;
    const PreferredLanguages m_appleLanguages;
    std::vector<Row> m_rows;
};

/// The language's name, or its code where there is none.
[[nodiscard]] std::string languageNameForPeople(const std::string& code);

} // namespace sweeply
