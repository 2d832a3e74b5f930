#pragma once

#include "appcore/ownership/EntryMatch.h"
#include "appcore/ownership/TermAutomaton.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

/// Says to which of many applications a name may belong: one automaton over everything they are known by.
///
/// Letter case does not count here: the Mac's disks do not tell letters by it, and whom a file may belong to is better
/// asked once too often. Immutable, so for any number of threads.
class ApplicationIndex final {
  public:
    explicit ApplicationIndex(std::vector<ApplicationTerms> applications);

    [[nodiscard]] const std::vector<ApplicationTerms>& applications() const { return m_applications; }

    /// An application that matches an entry, and how.
    struct Owner {
        const ApplicationTerms* application; ///< of this index
        Evidence match;
    };
    /// Every application that `matchOf` finds the entry to match.
    [[nodiscard]] std::vector<Owner> ownersOf(const SearchedEntry& entry) const;

    /// Does some bundle's name stand anywhere in a preference file's name, or some identifier at its beginning? `name`
    /// is without the extension.
    [[nodiscard]] bool hasOwnerOfPreferences(std::string_view name) const;

  private:
    /// What one text stands for: many applications may have it in common.
    struct Term {
        std::vector<std::uint32_t> applications;
        bool isIdentifier = false;
        bool isFileName = false;
    };

    std::vector<ApplicationTerms> m_applications;
    std::vector<ApplicationTerms> m_lowercase; ///< the same with small letters, but for the paths' beginnings
    std::vector<Term> m_terms;                 ///< by the automaton's terms
    TermAutomaton m_automaton;
};

} // namespace sweeply
