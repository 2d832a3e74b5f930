#include "appcore/receipts/Package.h"

#include "platform/Localization.h"
#include "platform/TargetPath.h"

#include <unordered_set>

namespace sweeply {

std::string Package::description() const {
    std::string names;
    for (const auto& appName : appNames.value_or(std::vector<std::string>()))
        names += (names.empty() ? "" : ", ") + appName;
    return formatText("Package name = %@ app = %@", {name, "(" + names + ")"});
}

std::string getPackageBaseDir(const plist::Value& info) {
    const auto withoutPoint = [](const std::string& path) { return path.starts_with('.') ? path.substr(1) : path; };
    if (const auto* relocated = info.findString("IFPkgRelocatedPath"))
        return withoutPoint(*relocated);
    if (const auto* prefix = info.findString("InstallPrefixPath"); prefix && !prefix->empty())
        return "/" + *prefix;
    const auto* standard = info.findString("IFPkgFlagDefaultLocation");
    return standard && !standard->empty() ? withoutPoint(*standard) : "/";
}

std::vector<std::string> applicationNamesIn(const std::vector<std::string>& paths) {
    constexpr std::string_view kInside = ".app/";
    std::vector<std::string> names;
    std::unordered_set<std::string> known;
    for (const auto& path : paths) {
        const auto end = path.find(kInside);
        if (end == std::string::npos)
            continue;
        std::string name(lastPathComponent(std::string_view(path).substr(0, end + kInside.size() - 1)));
        if (known.insert(name).second)
            names.push_back(std::move(name));
    }
    return names;
}

} // namespace sweeply
