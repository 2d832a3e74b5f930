#include "platform/SystemVersion.h"

#include "formats/PropertyList.h"
#include "platform/FileManager.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace sweeply {

namespace {

constexpr std::string_view kPath = "/System/Library/CoreServices/SystemVersion.plist";
constexpr std::size_t kLargestFile = 1 << 20;

constexpr double kPanther = 743;
constexpr double kTiger = 824;
constexpr double kLeopard = 949;

using Version = std::array<unsigned, 3>;

struct Release {
    Version version;
    double appKit;
};

/// The framework's numbers as its headers list them, oldest first. A release that is missing has the number of the one
/// before it.
constexpr std::array kReleases{
    Release{{10, 0, 0}, 577},    Release{{10, 1, 0}, 620},    Release{{10, 2, 0}, 663},    Release{{10, 2, 3}, 663.6},
    Release{{10, 3, 0}, 743},    Release{{10, 3, 2}, 743.14}, Release{{10, 3, 3}, 743.2},  Release{{10, 3, 5}, 743.24},
    Release{{10, 3, 7}, 743.33}, Release{{10, 3, 9}, 743.36}, Release{{10, 4, 0}, 824},    Release{{10, 4, 1}, 824.1},
    Release{{10, 4, 3}, 824.23}, Release{{10, 4, 4}, 824.33}, Release{{10, 4, 7}, 824.41}, Release{{10, 5, 0}, 949},
    Release{{10, 5, 2}, 949.27}, Release{{10, 5, 3}, 949.33}, Release{{10, 5, 8}, 949.54}, Release{{10, 6, 0}, 1038},
    Release{{10, 7, 0}, 1138},
};

std::optional<Version> parseVersion(std::string_view text) {
    Version version{};
    const char* position = text.data();
    const char* const end = position + text.size();
    for (std::size_t part = 0; part < version.size(); ++part) {
        const auto [after, error] = std::from_chars(position, end, version[part]);
        if (error != std::errc{})
            return std::nullopt;
        if (after == end)
            return part > 0 ? std::optional(version) : std::nullopt;
        if (*after != '.')
            return std::nullopt;
        position = after + 1;
    }
    return std::nullopt;
}

Failure damaged(std::string reason) {
    return Failure(Error{ErrorKind::Damaged, std::string(kPath), std::move(reason)});
}

} // namespace

SystemVersion::SystemVersion(std::string productVersion, double appKitVersion)
    : m_productVersion(std::move(productVersion)), m_appKitVersion(appKitVersion) {}

std::optional<SystemVersion> SystemVersion::fromProductVersion(std::string_view productVersion) {
    const auto version = parseVersion(productVersion);
    if (!version || *version < kReleases.front().version)
        return std::nullopt;
    const auto later = std::find_if(kReleases.begin(), kReleases.end(),
                                    [&](const Release& release) { return release.version > *version; });
    return SystemVersion(std::string(productVersion), std::prev(later)->appKit);
}

Result<SystemVersion> SystemVersion::read(const FileManager& fileManager) {
    const auto bytes = fileManager.contentsAtPath(kPath, kLargestFile);
    if (!bytes)
        return Failure(bytes.error());
    const auto list = plist::parse(*bytes);
    if (!list)
        return damaged(list.error());
    const std::string* text = list->findString("ProductVersion");
    if (!text)
        return damaged("no ProductVersion");
    if (auto version = fromProductVersion(*text))
        return *version;
    return damaged("ProductVersion is no version of Mac OS X");
}

bool SystemVersion::isTiger() const { return std::floor(m_appKitVersion) == kTiger; }
bool SystemVersion::isOnTigerOrBetter() const { return std::floor(m_appKitVersion) > kPanther; }
bool SystemVersion::isOnLeopardOrBetter() const { return std::floor(m_appKitVersion) > kTiger; }
bool SystemVersion::isSnowLeopardOrBetter() const { return std::floor(m_appKitVersion) > kLeopard; }

} // namespace sweeply
