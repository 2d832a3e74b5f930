#include "engine/tree/PathOverlap.h"

namespace sweeply {

bool holdsText(std::string_view whole, std::string_view part) {
    return !part.empty() && whole.find(part) != std::string_view::npos;
}

bool holdsUpToComponent(std::string_view path, std::string_view part) {
    if (part.empty())
        return false;
    for (auto at = path.find(part); at != std::string_view::npos; at = path.find(part, at + 1)) {
        const auto end = at + part.size();
        if (end == path.size() || path[end] == '/')
            return true;
    }
    return false;
}

} // namespace sweeply
