#pragma once

#include "appcore/ownership/ApplicationTerms.h"
#include "engine/tree/Evidence.h"

#include <cstdint>
#include <optional>
#include <string>

namespace sweeply {

/// By what the entries of a folder are told to belong to an application.
enum class SearchTerms : std::uint8_t {
    None,
    IdentifierAndName,
    Identifier,
    Name,
    TicketName,
    HostIdentifier, ///< the identifier, mostly with the machine that the settings are for
};

/// An entry of a folder that is searched.
struct SearchedEntry {
    std::string name;
    std::string realName; ///< without its extension, which a folder keeps
    SearchTerms terms = SearchTerms::None;
};

/// The best reason that the terms give to take the entry for the application's; nothing where it matches by none.
///
/// Identifiers are looked for anywhere in the name, but one of fewer than three parts, such as "com", is part of too
/// many names and has to be the whole. Names match by their words, in any order. Letter case counts.
[[nodiscard]] std::optional<Evidence> matchOf(const SearchedEntry& entry, const ApplicationTerms& application);

/// Does the first tell as surely as the second whose an item is, or more so: with greater strength, or with the same
/// and a term at least as long?
[[nodiscard]] bool isAsGoodAs(const Evidence& first, const Evidence& second);

} // namespace sweeply
