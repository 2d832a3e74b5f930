#include "tools/SweeplyHelperTool/MountedVolumes.h"

#include "appcore/JunkNames.h"
#include "platform/DirectoryEnumerator.h"
#include "platform/FileManager.h"
#include "platform/SystemLog.h"
#include "platform/TargetPath.h"
#include "tools/SweeplyHelperTool/KnownNames.h"
#include "tools/SweeplyHelperTool/VolumeRun.h"

#include <algorithm>
#include <fstream>
#include <sstream>

namespace helper {

using namespace sweeply;

namespace {

constexpr const char* kState = "/Library/Application Support/Sweeply/MountedVolumes.plist";

/// The table writes blanks, line breaks and backslashes as "\040".
std::string unescaped(const std::string& text) {
    std::string plain;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const auto isOctal = [&](std::size_t place) {
            return place < text.size() && text[place] >= '0' && text[place] <= '7';
        };
        if (text[at] == '\\' && isOctal(at + 1) && isOctal(at + 2) && isOctal(at + 3)) {
            plain += static_cast<char>((text[at + 1] - '0') * 64 + (text[at + 2] - '0') * 8 + (text[at + 3] - '0'));
            at += 3;
        } else {
            plain += text[at];
        }
    }
    return plain;
}

void removeItem(VolumeRun& run, const std::string& mountPoint, const std::string& path, SystemLog& log) {
    const auto outcome = run.remove(path);
    log.log((outcome.isDone() ? "Removed " : "Failed to remove ") + mountPoint + path +
            (outcome.isDone() ? std::string() : ": " + outcome.error.reason));
}

/// The trash has a folder for each user, whose contents go; the folders stay.
void emptyTrashes(FileManager& volume, VolumeRun& run, const std::string& mountPoint, const std::string& trashes,
                  SystemLog& log) {
    const auto users = volume.contentsOfDirectoryAtPath(trashes);
    for (const auto& user : users.value_or(std::vector<DirectoryEntry>())) {
        if (user.type != FileType::Directory)
            continue;
        const std::string folder = joinedPath(trashes, user.name);
        for (const auto& item : volume.contentsOfDirectoryAtPath(folder).value_or(std::vector<DirectoryEntry>()))
            removeItem(run, mountPoint, joinedPath(folder, item.name), log);
    }
}

} // namespace

std::vector<Volume> mountedVolumes(const std::string& mountinfo, const std::vector<std::string>& folders) {
    std::vector<Volume> volumes;
    std::ifstream table(mountinfo);
    for (std::string line; std::getline(table, line);) {
        // "36 35 98:0 / /mnt/point rw ..."
        std::istringstream columns(line);
        std::string number;
        std::string parent;
        std::string device;
        std::string root;
        std::string point;
        columns >> number >> parent >> device >> root >> point;
        point = unescaped(point);
        const bool isWanted = std::ranges::any_of(folders, [&](const std::string& folder) {
            return point.size() > folder.size() + 1 && point.starts_with(folder + "/");
        });
        if (isWanted)
            volumes.push_back({number + ":" + device + ":" + point, point});
    }
    return volumes;
}

std::vector<Volume> newlyMounted(FileManager& files, const std::string& home, const std::vector<Volume>& volumes,
                                 SystemLog& log) {
    KnownNames known(files, home + kState);
    std::vector<Volume> fresh;
    std::vector<std::string> keys;
    for (const auto& volume : volumes) {
        keys.push_back(volume.key);
        if (!known.contains(volume.key))
            fresh.push_back(volume);
    }
    if (known.isNew() && fresh.size() > 1)
        fresh.erase(fresh.begin(), fresh.end() - 1);
    if (const auto stored = known.store(keys); !stored)
        log.log(stored.error().message());
    return fresh;
}

void cleanVolume(const std::string& mountPoint, const Cleaners& cleaners, FileManager& files, const std::string& home,
                 SystemLog& log) {
    const auto volume = FileManager::open(mountPoint);
    const auto root = volume ? (*volume)->attributesOfItemAtPath("/", Links::DontFollow) : Failure(volume.error());
    if (!root) {
        log.log(root.error().message());
        return;
    }
    log.log("Cleaning " + mountPoint);
    std::vector<std::string> junk;
    std::vector<std::string> trashes;
    auto walk = (*volume)->enumeratorAtPath("/");
    while (const auto entry = walk.next()) {
        if (entry->type == FileType::Directory) {
            const auto attributes = walk.attributes();
            if (!attributes || attributes->device != root->device) {
                walk.skipDescendants(); // something else is mounted there
                continue;
            }
        }
        const auto name = lastPathComponent(entry->path);
        const bool isTrashes = junk::isOneOf(junk::kTrashes, name);
        const bool isJunk = (cleaners.macOSJunk && junk::isOneOf(junk::kFinder, name)) ||
                            (cleaners.winJunk && junk::isOneOf(junk::kWindows, name));
        if (isTrashes || isJunk)
            walk.skipDescendants();
        if (isJunk)
            junk.push_back("/" + entry->path);
        if (isTrashes && cleaners.trashes && entry->type == FileType::Directory)
            trashes.push_back("/" + entry->path);
    }
    VolumeRun run(**volume, files, home, log);
    if (const auto begun = run.begin(); !begun) {
        log.log(begun.error().message());
        return;
    }
    for (const auto& path : junk)
        removeItem(run, mountPoint, path, log);
    for (const auto& path : trashes)
        emptyTrashes(**volume, run, mountPoint, path, log);
    run.finish();
}

} // namespace helper
