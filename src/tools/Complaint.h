#pragma once

#include "formats/DisplayEscapes.h"

#include <cstdio>
#include <string>
#include <string_view>

namespace sweeply {

/// A tool's message on standard error: one line, whatever a stranger's name in it holds. Answers with the status that a
/// tool ends with then, 1.
inline int printComplaint(std::string_view message) {
    std::fprintf(stderr, "%s\n", escapedForDisplay(message).c_str());
    return 1;
}

} // namespace sweeply
