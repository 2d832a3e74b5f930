#include "engine/tree/Evidence.h"

#include <array>

namespace sweeply {

namespace {

/// In the order of EvidenceRule.
constexpr std::array<std::string_view, 24> kRules{
    "bundle",
    "receipt",
    "identifier",
    "name",
    "brought-plugin",
    "ticket",
    "login-item",
    "launch-item",
    "nested-application",
    "package",
    "cache-folder",
    "photo-cache",
    "log-size",
    "language-not-kept",
    "foreign-code",
    "developer-file",
    "trash",
    "finder-file",
    "orphaned-widget",
    "dead-login-item",
    "dead-launch-item",
    "orphaned-preference",
    "extension",
    "named",
};
static_assert(kRules.size() == static_cast<std::size_t>(EvidenceRule::Named) + 1);

constexpr std::array<std::string_view, 3> kStrengths{"weak", "likely", "certain"};

} // namespace

std::string_view nameOf(EvidenceRule rule) { return kRules[static_cast<std::size_t>(rule)]; }

std::string_view nameOf(EvidenceStrength strength) { return kStrengths[static_cast<std::size_t>(strength)]; }

bool isCheckedAtFirst(const Evidence& evidence, bool checksWeakMatches) {
    return !evidence.isClaimed() && (checksWeakMatches || evidence.strength != EvidenceStrength::Weak);
}

} // namespace sweeply
