#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

/// Orders versions such as "1.2.10b3" and "1.2.9" the way a person would: numbers as numbers, letters as text, and a
/// pre-release tail below the plain release.
class SWVersionComparator final {
  public:
    enum class PartType { Number, String, Period };

    /// What the part is as a whole: its first character tells, unless it is exactly ".".
    [[nodiscard]] static PartType typeOfCharacter(std::string_view part);
    /// Runs of digits, runs of other characters, and each period by itself. None for an empty version.
    [[nodiscard]] static std::vector<std::string> splitVersionString(std::string_view version);
    /// -1 when `a` is older than `b`, 0 when they are equal, 1 when `a` is newer.
    [[nodiscard]] static int compareVersion(std::string_view a, std::string_view b);
};

} // namespace sweeply
