#pragma once

#include <string_view>

namespace sweeply {

/// The code of a language as folders of older systems call it: by its English name, or by a code of the time before
/// there was a standard for scripts. Empty for any other name. Exact, capitals included.
[[nodiscard]] std::string_view codeForOldLanguageName(std::string_view name);

} // namespace sweeply
