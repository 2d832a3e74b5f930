#include "appcore/AppleLanguages.h"

#include "appcore/FolderConstants.h"
#include "formats/PropertyList.h"
#include "platform/FileManager.h"

namespace sweeply {

namespace {

constexpr const char* kGlobalPreferences = "/Library/Preferences/.GlobalPreferences.plist";
constexpr std::size_t kLargestPreferences = std::size_t{4} << 20U;

/// Empty where the file is missing or does not say.
Result<std::vector<std::string>> languagesIn(const FileManager& files, const std::string& path) {
    const auto bytes = files.contentsAtPath(path, kLargestPreferences);
    if (!bytes && bytes.error().kind == ErrorKind::NotFound)
        return {};
    if (!bytes)
        return Failure(bytes.error());
    const auto preferences = plist::parse(*bytes);
    if (!preferences)
        return Failure(Error{ErrorKind::Damaged, path, preferences.error()});
    const auto* languages = preferences->find("AppleLanguages");
    return languages ? plist::textsOf(*languages) : std::vector<std::string>();
}

} // namespace

Result<std::vector<std::string>> appleLanguages(const FileManager& files, const FolderConstants& folders) {
    for (const auto& folder : {folders.home, std::string()}) {
        auto languages = languagesIn(files, folder + kGlobalPreferences);
        if (!languages || !languages->empty())
            return languages;
    }
    return std::vector<std::string>{"en"};
}

} // namespace sweeply
