#include "appcore/AppleLanguages.h"

#include "appcore/FolderConstants.h"
#include "formats/PropertyList.h"
#include "platform/FileManager.h"

namespace sweeply {

namespace {

constexpr const char* kGlobalPreferences = "~/Library/Preferences/.GlobalPreferences.plist";
constexpr std::size_t kLargestPreferences = std::size_t{4} << 20U;

} // namespace

std::vector<std::string> appleLanguages(const FileManager& files, const FolderConstants& folders) {
    const auto bytes = files.contentsAtPath(folders.expandTilde(kGlobalPreferences), kLargestPreferences);
    if (!bytes)
        return {};
    const auto preferences = plist::parse(*bytes);
    const auto* languages = preferences ? preferences->find("AppleLanguages") : nullptr;
    return languages ? plist::textsOf(*languages) : std::vector<std::string>();
}

} // namespace sweeply
