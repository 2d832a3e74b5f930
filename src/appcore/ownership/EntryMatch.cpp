#include "appcore/ownership/EntryMatch.h"

#include "platform/StringExtras.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace sweeply {

namespace {

constexpr std::ptrdiff_t kFewestPoints = 2;
constexpr std::size_t kDigitsOfAddress = 12;
constexpr std::array<std::size_t, 5> kGroupsOfUuid{8, 4, 4, 4, 12};

/// What the system and its frameworks append to an identifier.
constexpr std::array<std::string_view, 6> kOwnSuffixes{
    "", ".plist", ".plist.lockfile", ".savedState", ".LSSharedFileList.plist", ".binarycookies"};

bool tellsApplicationsApart(std::string_view identifier) {
    return std::ranges::count(identifier, '.') >= kFewestPoints && identifier.find("..") == std::string_view::npos &&
           !identifier.starts_with('.') && !identifier.ends_with('.');
}

bool isHexadecimal(std::string_view text) {
    return std::ranges::all_of(text, [](char digit) { return hexToInt(digit) >= 0; });
}

/// The address of a network card, or a UUID.
bool isHost(std::string_view text) {
    if (text.size() == kDigitsOfAddress)
        return isHexadecimal(text);
    for (const std::size_t length : kGroupsOfUuid) {
        if (!isHexadecimal(text.substr(0, length)) || text.size() < length)
            return false;
        text.remove_prefix(length);
        if (!text.empty() && !text.starts_with('-'))
            return false;
        text.remove_prefix(text.empty() ? 0 : 1);
    }
    return text.empty();
}

/// "IDENTIFIER.HOST.plist", given what comes after the identifier.
bool isHostSuffix(std::string_view suffix) {
    constexpr std::string_view kExtension = ".plist";
    return suffix.starts_with('.') && suffix.ends_with(kExtension) && suffix.size() > kExtension.size() &&
           isHost(suffix.substr(1, suffix.size() - 1 - kExtension.size()));
}

std::optional<EvidenceStrength> strengthByIdentifier(const SearchedEntry& entry, std::string_view identifier) {
    const std::string_view name = entry.name;
    const auto at = identifier.empty() ? std::string_view::npos : name.find(identifier);
    if (at == std::string_view::npos || trimWhiteSpace(identifier).empty())
        return std::nullopt;
    if (at == 0) {
        const auto rest = name.substr(identifier.size());
        if (!tellsApplicationsApart(identifier))
            return rest.empty() || rest == ".plist" ? std::optional(EvidenceStrength::Certain) : std::nullopt;
        if (std::ranges::find(kOwnSuffixes, rest) != kOwnSuffixes.end() ||
            (entry.terms == SearchTerms::HostIdentifier && isHostSuffix(rest)))
            return EvidenceStrength::Certain;
        if (std::string_view(".-_ ").find(rest.front()) != std::string_view::npos)
            return EvidenceStrength::Likely;
    }
    return tellsApplicationsApart(identifier) ? std::optional(EvidenceStrength::Weak) : std::nullopt;
}

std::optional<Evidence> matchByName(const SearchedEntry& entry, const ApplicationTerms& application) {
    const bool isTicket = entry.terms == SearchTerms::TicketName;
    const std::string_view shortName = isTicket ? nameWithoutExtension(entry.name) : std::string_view(entry.realName);
    const bool isFound = isTicket ? entry.name.find(application.name) != std::string::npos
                                  : compareByWords(application.name, entry.realName) == 0;
    if (!isFound || trimWhiteSpace(application.name).empty())
        return std::nullopt;
    const auto rule = isTicket ? EvidenceRule::Ticket : EvidenceRule::Name;
    for (const std::string_view whole : {std::string_view(application.name), application.fileName()}) {
        if (shortName == whole)
            return Evidence{rule, EvidenceStrength::Likely, std::string(whole)};
    }
    return Evidence{rule, EvidenceStrength::Weak, application.name};
}

} // namespace

bool isAsGoodAs(const Evidence& first, const Evidence& second) {
    return first.strength != second.strength ? first.strength > second.strength
                                             : first.term.size() >= second.term.size();
}

std::optional<Evidence> matchOf(const SearchedEntry& entry, const ApplicationTerms& application) {
    const bool asksIdentifier = entry.terms == SearchTerms::IdentifierAndName ||
                                entry.terms == SearchTerms::Identifier || entry.terms == SearchTerms::HostIdentifier;
    const bool asksName = entry.terms == SearchTerms::IdentifierAndName || entry.terms == SearchTerms::Name ||
                          entry.terms == SearchTerms::TicketName;
    std::optional<Evidence> best;
    if (const auto strength = asksIdentifier ? strengthByIdentifier(entry, application.identifier) : std::nullopt)
        best = Evidence{EvidenceRule::Identifier, *strength, application.identifier};
    if (auto byName = asksName ? matchByName(entry, application) : std::nullopt;
        byName && (!best || !isAsGoodAs(*best, *byName)))
        best = std::move(byName);
    return best;
}

} // namespace sweeply
