#include "appcore/TargetPart.h"

#include <algorithm>

namespace sweeply {

bool TargetPart::includes(std::string_view path) const {
    const auto isAbovePath = [path](const std::string& home) {
        return path.starts_with(home) && (path.size() == home.size() || path[home.size()] == '/');
    };
    return isEverything() || std::ranges::any_of(m_homes, isAbovePath) == m_isInside;
}

} // namespace sweeply
