#include "appcore/ownership/TermAutomaton.h"

#include <gtest/gtest.h>
#include <random>
#include <set>

namespace sweeply {
namespace {

using Occurrences = std::multiset<std::pair<std::size_t, std::size_t>>;

Occurrences occurrences(const std::vector<std::string>& terms, std::string_view text) {
    Occurrences found;
    TermAutomaton(terms).forEachIn(text, [&](std::size_t term, std::size_t begin) {
        found.emplace(term, begin);
        return true;
    });
    return found;
}

Occurrences naiveOccurrences(const std::vector<std::string>& terms, std::string_view text) {
    Occurrences found;
    for (std::size_t term = 0; term < terms.size(); ++term) {
        for (std::size_t at = 0; !terms[term].empty() && (at = text.find(terms[term], at)) != text.npos; ++at)
            found.emplace(term, at);
    }
    return found;
}

TEST(TermAutomatonTest, FindsWhatLookingForEachTermFinds) {
    const unsigned seed = std::random_device()();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    // Few letters, so that terms overlap, repeat and end one another.
    const auto text = [&](std::size_t longest) {
        std::string made(random() % (longest + 1), 'a');
        for (char& letter : made)
            letter = "ab\xFF\0"[random() % 4];
        return made;
    };
    for (int round = 0; round < 2000; ++round) {
        std::vector<std::string> terms(random() % 12);
        for (auto& term : terms)
            term = text(6);
        const auto searched = text(40);
        ASSERT_EQ(occurrences(terms, searched), naiveOccurrences(terms, searched));
        ASSERT_EQ(TermAutomaton(terms).occursIn(searched), !naiveOccurrences(terms, searched).empty());
    }
}

} // namespace
} // namespace sweeply
