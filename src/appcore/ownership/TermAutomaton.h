#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

/// Finds every place where any of many terms stands in a text, in one pass over the text however many terms there are
/// (the automaton of Aho and Corasick). Terms and texts are bytes. Immutable, so for any number of threads.
class TermAutomaton final {
  public:
    /// Terms are known by their place in `terms`. An empty one stands nowhere; equal ones are all found.
    explicit TermAutomaton(const std::vector<std::string>& terms);

    /// Calls `found(term, begin)` for every occurrence, by where they end, until it returns false.
    template<typename Found>
    void forEachIn(std::string_view text, Found found) const {
        std::uint32_t state = kRoot;
        for (std::size_t end = 1; end <= text.size(); ++end) {
            state = next(state, static_cast<unsigned char>(text[end - 1]));
            for (auto at = longestTermAtEndOf(state); at != kRoot; at = m_states[at].shorter) {
                for (auto term = m_states[at].term; term != kNone; term = m_sameTerm[term]) {
                    if (!found(std::size_t{term}, end - m_states[at].depth))
                        return;
                }
            }
        }
    }

    /// Does any term stand anywhere in the text?
    [[nodiscard]] bool occursIn(std::string_view text) const {
        bool isFound = false;
        forEachIn(text, [&](std::size_t, std::size_t) { return !(isFound = true); });
        return isFound;
    }

  private:
    static constexpr std::uint32_t kRoot = 0;
    static constexpr std::uint32_t kNone = ~std::uint32_t{0};

    /// A beginning of some terms. Its continuations are a list: few have more than one.
    struct State {
        std::uint32_t firstChild = kRoot;
        std::uint32_t sibling = kRoot;
        std::uint32_t fallback = kRoot; ///< the longest proper end of it that is a beginning, too
        std::uint32_t shorter = kRoot;  ///< the longest proper end of it that is a whole term; kRoot for none
        std::uint32_t term = kNone;     ///< the first that ends here
        std::uint32_t depth = 0;        ///< bytes
        unsigned char byte = 0;
    };

    /// The state itself if it is a whole term; kRoot for none.
    [[nodiscard]] std::uint32_t longestTermAtEndOf(std::uint32_t state) const {
        return m_states[state].term != kNone ? state : m_states[state].shorter;
    }

    [[nodiscard]] std::uint32_t child(std::uint32_t state, unsigned char byte) const;
    [[nodiscard]] std::uint32_t next(std::uint32_t state, unsigned char byte) const;
    void add(std::uint32_t index, std::string_view term);
    void connect();

    std::vector<State> m_states{1};
    std::array<std::uint32_t, 256> m_first{}; ///< the root's children, by byte
    std::vector<std::uint32_t> m_sameTerm;    ///< for each term the next one that is equal, or kNone
};

} // namespace sweeply
