#include "appcore/ownership/ApplicationIndex.h"

#include "platform/StringExtras.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace sweeply {

namespace {

ApplicationTerms lowercase(const ApplicationTerms& terms) {
    return {lowercaseString(terms.path), lowercaseString(terms.identifier), lowercaseString(terms.name)};
}

/// A name matches only where all of its words are; the longest is in the fewest names.
std::string longestWord(std::string_view name) {
    std::string_view longest;
    while (!name.empty()) {
        const auto end = std::min(name.find(' '), name.size());
        if (end > longest.size())
            longest = name.substr(0, end);
        name.remove_prefix(std::min(end + 1, name.size()));
    }
    return std::string(longest);
}

} // namespace

ApplicationIndex::ApplicationIndex(std::vector<ApplicationTerms> applications)
    : m_applications(std::move(applications)), m_automaton([this] {
          std::vector<std::string> texts;
          std::unordered_map<std::string, std::size_t> known;
          const auto termOf = [&](std::string text, std::uint32_t application) -> Term& {
              const auto [place, isNew] = known.try_emplace(std::move(text), texts.size());
              if (isNew) {
                  texts.push_back(place->first);
                  m_terms.emplace_back();
              }
              auto& term = m_terms[place->second];
              term.applications.push_back(application);
              return term;
          };
          m_lowercase.reserve(m_applications.size());
          for (std::uint32_t i = 0; i < m_applications.size(); ++i) {
              const auto& terms = m_lowercase.emplace_back(lowercase(m_applications[i]));
              termOf(terms.identifier, i).isIdentifier = true;
              termOf(std::string(terms.fileName()), i).isFileName = true;
              termOf(longestWord(terms.name), i);
          }
          return TermAutomaton(texts);
      }()) {}

std::vector<ApplicationIndex::Owner> ApplicationIndex::ownersOf(const SearchedEntry& entry) const {
    const SearchedEntry searched{lowercaseString(entry.name), lowercaseString(entry.realName), entry.terms};
    std::vector<std::uint32_t> candidates;
    m_automaton.forEachIn(searched.name, [&](std::size_t term, std::size_t) {
        candidates.insert(candidates.end(), m_terms[term].applications.begin(), m_terms[term].applications.end());
        return true;
    });
    std::ranges::sort(candidates);
    const auto repeated = std::ranges::unique(candidates);
    candidates.erase(repeated.begin(), repeated.end());
    std::vector<Owner> owners;
    for (const auto candidate : candidates) {
        if (auto match = matchOf(searched, m_lowercase[candidate]))
            owners.push_back({&m_applications[candidate], *std::move(match)});
    }
    return owners;
}

bool ApplicationIndex::hasOwnerOfPreferences(std::string_view name) const {
    bool isFound = false;
    m_automaton.forEachIn(lowercaseString(name), [&](std::size_t term, std::size_t begin) {
        isFound = m_terms[term].isFileName || (m_terms[term].isIdentifier && begin == 0);
        return !isFound;
    });
    return isFound;
}

} // namespace sweeply
