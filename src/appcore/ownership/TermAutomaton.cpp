#include "appcore/ownership/TermAutomaton.h"

#include <utility>

namespace sweeply {

TermAutomaton::TermAutomaton(const std::vector<std::string>& terms) : m_sameTerm(terms.size(), kNone) {
    for (std::size_t index = 0; index < terms.size(); ++index)
        add(static_cast<std::uint32_t>(index), terms[index]);
    connect();
}

std::uint32_t TermAutomaton::child(std::uint32_t state, unsigned char byte) const {
    if (state == kRoot)
        return m_first[byte];
    auto at = m_states[state].firstChild;
    while (at != kRoot && m_states[at].byte != byte)
        at = m_states[at].sibling;
    return at;
}

std::uint32_t TermAutomaton::next(std::uint32_t state, unsigned char byte) const {
    for (;;) {
        const auto to = child(state, byte);
        if (to != kRoot || state == kRoot)
            return to;
        state = m_states[state].fallback;
    }
}

void TermAutomaton::add(std::uint32_t index, std::string_view term) {
    if (term.empty())
        return;
    std::uint32_t state = kRoot;
    for (const char character : term) {
        const auto byte = static_cast<unsigned char>(character);
        auto to = child(state, byte);
        if (to == kRoot) {
            to = static_cast<std::uint32_t>(m_states.size());
            State made;
            made.byte = byte;
            made.depth = m_states[state].depth + 1;
            made.sibling = std::exchange(m_states[state].firstChild, to);
            m_states.push_back(made);
            if (state == kRoot)
                m_first[byte] = to;
        }
        state = to;
    }
    m_sameTerm[index] = std::exchange(m_states[state].term, index);
}

void TermAutomaton::connect() {
    // Breadth first: whatever a state falls back to is shorter, and so connected before it.
    std::vector<std::uint32_t> order{kRoot};
    order.reserve(m_states.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        const auto parent = order[i];
        for (auto at = m_states[parent].firstChild; at != kRoot; at = m_states[at].sibling) {
            auto& state = m_states[at];
            state.fallback = parent == kRoot ? kRoot : next(m_states[parent].fallback, state.byte);
            state.shorter = longestTermAtEndOf(state.fallback);
            order.push_back(at);
        }
    }
}

} // namespace sweeply
