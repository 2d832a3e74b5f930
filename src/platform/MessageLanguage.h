#pragma once

#include <string>
#include <vector>

namespace sweeply {

/// The catalogues that the environment asks for, best first: "de_AT", "de". LANGUAGE counts first, unless the locale
/// (LC_ALL, LC_MESSAGES, LANG, whichever comes first) is "C" or "POSIX". English ends the list: it needs none.
[[nodiscard]] std::vector<std::string> wantedCatalogues();

/// The catalogue that bindTextDomain took; empty for English. From any thread.
[[nodiscard]] std::string messageLanguage();

} // namespace sweeply
