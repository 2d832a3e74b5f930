#pragma once

#include "app/Target.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace sweeply {

class Application;

/// What the users of a target want of what they share. Asked of one after the other, it makes the share of a run that
/// looks at it for all of them: a language that anybody keeps stays, an item or application that anybody wants left
/// alone is, a module looks where everybody has it switched on, and what cannot be made again is kept where anybody
/// keeps it. Main thread.
class UsersWishes final {
  public:
    /// `homes` are those of all users, also of those who cannot be asked.
    explicit UsersWishes(std::vector<std::string> homes) : m_homes(std::move(homes)) {}

    /// Takes over what the application's user wants. Waits for the list of applications.
    void add(Application& application);
    /// A user who cannot be asked: nobody knows which languages must stay, so none will go.
    void addUnknown(const Error& reason);

    [[nodiscard]] TargetShare share() const;

  private:
    void addLanguages(Application& application);
    void addIgnored(Application& application);

    const std::vector<std::string> m_homes;
    std::map<std::string, bool> m_switches;
    std::uint64_t m_daysKept = 0;
    std::optional<Error> m_languagesUnknown;
    std::vector<std::string> m_dearLanguages;  ///< that somebody prefers to English
    std::vector<std::string> m_otherLanguages; ///< that somebody prefers besides
    std::map<std::string, bool> m_keptLanguages;
    std::map<std::string, std::set<std::string>> m_uncheckedItems; ///< by module
    std::set<std::string> m_ignoredApplications;
    std::set<std::string> m_applications;
};

} // namespace sweeply
