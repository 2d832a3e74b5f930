#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace sweeply {

/// By which rule an item came into a list.
enum class EvidenceRule : std::uint8_t {
    Bundle,
    Receipt,
    Identifier,
    Name,
    BroughtPlugin,
    Ticket,
    LoginItem,
    LaunchItem,
    NestedApplication,
    Package,
    CacheFolder,
    PhotoCache,
    LogSize,
    LanguageNotKept,
    ForeignCode,
    DeveloperFile,
    Trash,
    FinderFile,
    OrphanedWidget,
    DeadLoginItem,
    DeadLaunchItem,
    OrphanedPreference,
    Extension,
    Named,
};

/// How sure it is that the item is what the rule takes it for; later ones are greater.
enum class EvidenceStrength : std::uint8_t { Weak, Likely, Certain };

/// "brought-plugin", "certain" and so on: the words of scripts, which never change.
[[nodiscard]] std::string_view nameOf(EvidenceRule rule);
[[nodiscard]] std::string_view nameOf(EvidenceStrength strength);

/// Why an item is listed.
struct Evidence {
    EvidenceRule rule = EvidenceRule::Named;
    EvidenceStrength strength = EvidenceStrength::Certain;
    /// The identifier, name, receipt, language or program that matched; empty where there is none.
    std::string term = {};
    /// Bundles of other applications that claim the item as well or better, in the order of their paths.
    std::vector<std::string> alsoClaimedBy = {};

    [[nodiscard]] bool isClaimed() const { return !alsoClaimedBy.empty(); }
    friend bool operator==(const Evidence&, const Evidence&) = default;
};

/// Is such an item checked before the person said anything? Never one that is claimed.
[[nodiscard]] bool isCheckedAtFirst(const Evidence& evidence, bool checksWeakMatches);

/// Evidence that never changes, shared by all who hold it: one word, because every node holds one and most items of a
/// module have the same. May be empty. Thread-safe like a shared pointer.
class SharedEvidence final {
  public:
    SharedEvidence() = default;
    explicit SharedEvidence(Evidence evidence) : m_shared(new Shared{std::move(evidence)}) {}
    explicit SharedEvidence(EvidenceRule rule, std::string_view term = {})
        : SharedEvidence(Evidence{rule, EvidenceStrength::Certain, std::string(term)}) {}
    SharedEvidence(const SharedEvidence& other) : m_shared(other.m_shared) {
        if (m_shared)
            m_shared->owners.fetch_add(1, std::memory_order_relaxed);
    }
    SharedEvidence(SharedEvidence&& other) noexcept : m_shared(std::exchange(other.m_shared, nullptr)) {}
    SharedEvidence& operator=(SharedEvidence other) noexcept {
        std::swap(m_shared, other.m_shared);
        return *this;
    }
    ~SharedEvidence() {
        if (m_shared && m_shared->owners.fetch_sub(1, std::memory_order_acq_rel) == 1)
            delete m_shared;
    }

    /// nullptr when empty.
    [[nodiscard]] const Evidence* get() const { return m_shared ? &m_shared->evidence : nullptr; }

  private:
    struct Shared {
        const Evidence evidence;
        std::atomic<std::uint32_t> owners{1};
    };

    Shared* m_shared = nullptr;
};

} // namespace sweeply
