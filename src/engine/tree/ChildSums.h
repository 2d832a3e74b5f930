#pragma once

#include <cstdint>

namespace sweeply {

/// What one child counts for in its parent's sums.
struct ChildShare {
    std::uint64_t size = 0;
    bool enabled = false;    ///< checked itself
    bool anyEnabled = false; ///< something at or below its leaves is checked

    bool operator==(const ChildShare&) const = default;
};

/// The sums over the children of one node, visible and invisible together. They hold as long as every child's share is
/// added when it comes, subtracted when it goes and replaced when it changes. Sizes add up modulo 2^64.
class ChildSums final {
  public:
    void add(const ChildShare& child) {
        m_size += child.size;
        m_enabledCount += child.enabled;
        if (child.anyEnabled) {
            m_sizeOfAnyEnabled += child.size;
            ++m_anyEnabledCount;
        }
    }
    void subtract(const ChildShare& child) {
        m_size -= child.size;
        m_enabledCount -= child.enabled;
        if (child.anyEnabled) {
            m_sizeOfAnyEnabled -= child.size;
            --m_anyEnabledCount;
        }
    }
    /// A child's size alone becomes `size`.
    void resize(const ChildShare& child, std::uint64_t size) {
        m_size += size - child.size;
        if (child.anyEnabled)
            m_sizeOfAnyEnabled += size - child.size;
    }
    void replace(const ChildShare& before, const ChildShare& after) {
        subtract(before);
        add(after);
    }

    /// Of all children.
    [[nodiscard]] std::uint64_t size() const { return m_size; }
    /// Of those with anything checked.
    [[nodiscard]] std::uint64_t sizeOfAnyEnabled() const { return m_sizeOfAnyEnabled; }
    /// Children that are checked themselves.
    [[nodiscard]] std::uint32_t enabledCount() const { return m_enabledCount; }
    /// Children with anything checked.
    [[nodiscard]] std::uint32_t anyEnabledCount() const { return m_anyEnabledCount; }

  private:
    std::uint64_t m_size = 0;
    std::uint64_t m_sizeOfAnyEnabled = 0;
    std::uint32_t m_enabledCount = 0;
    std::uint32_t m_anyEnabledCount = 0;
};

} // namespace sweeply
