#include "tools/SweeplyHelperTool/TrashedApplications.h"

#include "appcore/FolderConstants.h"
#include "appcore/SWApplicationCore.h"
#include "platform/SystemLog.h"
#include "platform/TargetPath.h"
#include "tools/SweeplyHelperTool/KnownNames.h"

#include <algorithm>
#include <thread>
#include <utility>

namespace helper {

using namespace sweeply;

namespace {

constexpr const char* kState = "/Library/Application Support/Sweeply/TrashedApplications.plist";

/// The same folder of the Trash, whatever it held before: its place on the disk and its name.
std::string keyOf(const FileAttributes& attributes, const std::string& name) {
    return std::to_string(attributes.device) + ":" + std::to_string(attributes.inode) + ":" + name;
}

/// Empty while there is none that can be read.
std::string identifierOf(const SWApplicationCore& applications, const std::string& path,
                         std::chrono::milliseconds patience) {
    constexpr std::chrono::milliseconds kLook{100};
    for (auto waited = std::chrono::milliseconds(0);; waited += kLook) {
        auto identifier = applications.bundleIDForAppWithPath(path).value_or(std::string());
        if (!identifier.empty() || waited >= patience)
            return identifier;
        std::this_thread::sleep_for(kLook);
    }
}

} // namespace

std::vector<std::string> newlyTrashedApplications(FileManager& files, const std::string& home,
                                                  std::chrono::milliseconds patience, SystemLog& log) {
    FolderConstants folders(std::string(lastPathComponent(home)));
    folders.home = home;
    const SWApplicationCore applications(files, folders, nullptr, log);
    const std::string trash = joinedPath(home, ".Trash");
    const auto entries = files.contentsOfDirectoryAtPath(trash);
    if (!entries) {
        log.log(entries.error().message());
        return {};
    }
    KnownNames known(files, home + kState);
    std::vector<std::string> names;
    std::vector<std::pair<std::string, std::string>> fresh; // path and identifier
    for (const auto& entry : *entries) {
        const std::string path = joinedPath(trash, entry.name);
        const auto attributes = files.attributesOfItemAtPath(path, Links::DontFollow);
        if (pathExtension(entry.name) != "app" || !attributes || attributes->type != FileType::Directory)
            continue;
        std::string key = keyOf(*attributes, entry.name);
        const bool isKnown = known.contains(key);
        const auto identifier = isKnown ? std::string() : identifierOf(applications, path, patience);
        if (!isKnown && identifier.empty()) {
            log.log(path + ": still being copied, or no application");
            continue;
        }
        if (!isKnown)
            fresh.emplace_back(path, identifier);
        names.push_back(std::move(key));
    }
    std::vector<std::string> installed;
    for (const auto& folder : fresh.empty()
                                  ? std::vector<std::string>()
                                  : std::vector<std::string>{"/Applications", joinedPath(home, "Applications")}) {
        for (const auto& application : applications.createApplicationsArrayInPathDeep(folder, nullptr)) {
            if (auto identifier = applications.bundleIDForAppWithPath(application))
                installed.push_back(*std::move(identifier));
        }
    }
    std::vector<std::string> offered;
    for (auto& [path, identifier] : fresh) {
        if (std::ranges::find(installed, identifier) == installed.end())
            offered.push_back(std::move(path));
        else
            log.log(path + ": another copy is installed");
    }
    if (const auto stored = known.store(names); !stored)
        log.log(stored.error().message());
    return offered;
}

} // namespace helper
