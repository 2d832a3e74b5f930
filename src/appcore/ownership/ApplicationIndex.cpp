#include "appcore/ownership/ApplicationIndex.h"

#include "platform/StringExtras.h"

#include <algorithm>
#include <limits>
#include <unordered_map>
#include <utility>

namespace sweeply {

namespace {

constexpr std::size_t kLongest = std::numeric_limits<std::size_t>::max();

ApplicationTerms lowercase(const ApplicationTerms& terms) {
    return {lowercaseString(terms.path), lowercaseString(terms.identifier), lowercaseString(terms.name)};
}

/// How many applications have each word in their names.
using Frequencies = std::unordered_map<std::string_view, std::size_t>;

/// A name matches only where all of its words are: the one that tells most is enough to find candidates by.
std::string_view rarestWord(std::string_view name, const Frequencies& frequencies) {
    std::string_view rarest;
    for (const auto word : piecesBetweenSpaces(name)) {
        const auto rank = [&](std::string_view one) { return std::pair(frequencies.at(one), kLongest - one.size()); };
        if (!word.empty() && (rarest.empty() || rank(word) < rank(rarest)))
            rarest = word;
    }
    return rarest;
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
          Frequencies frequencies;
          m_lowercase.reserve(m_applications.size());
          for (const auto& application : m_applications) {
              for (const auto word : piecesBetweenSpaces(m_lowercase.emplace_back(lowercase(application)).name))
                  ++frequencies[word];
          }
          for (std::uint32_t i = 0; i < m_applications.size(); ++i) {
              const auto& terms = m_lowercase[i];
              termOf(terms.identifier, i).isIdentifier = true;
              termOf(std::string(terms.fileName()), i).isFileName = true;
              termOf(std::string(rarestWord(terms.name, frequencies)), i);
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
