// rm [-rRfP] PATH...
//
// Removes files, with -r folders and all below them, with -P after overwriting every file three times where it lies. No
// link is followed and nothing mounted is entered.
#include "platform/TargetPath.h"
#include "platform/TreeRemover.h"
#include "platform/UniqueFd.h"
#include "tools/Complaint.h"
#include "tools/rm/Eraser.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

using namespace sweeply;

constexpr const char* kUsage =
    "usage: rm [-rRfP] PATH...\n"
    "  -r, -R  folders too, with everything in them\n"
    "  -f      nothing at a path is no error\n"
    "  -P      overwrite files with 0xff, 0x00 and 0xff before they go. Disks with flash memory,\n"
    "          snapshots and file systems that copy on writing may keep the old contents elsewhere.\n";

struct Options {
    bool isRecursive = false;
    bool isForced = false;
    bool overwrites = false;
};

bool complain(const std::string& path, const std::string& reason) {
    printComplaint("rm: " + path + ": " + reason);
    return false;
}

bool remove(const std::string& path, const Options& options) {
    const std::string whole = normalisedPath(path);
    const std::string name(lastPathComponent(whole));
    if (name.empty() || name == "." || name == "..")
        return complain(path, "refusing to remove it");
    std::string folder(pathWithoutLastComponent(whole));
    if (folder.empty())
        folder = ".";
    const UniqueFd parent(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    struct stat status {};
    if (!parent || ::fstatat(parent.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return (errno == ENOENT && options.isForced) || complain(path, std::strerror(errno));
    if (S_ISDIR(status.st_mode) && !options.isRecursive)
        return complain(path, "is a folder");
    if (options.overwrites)
        return rm::Eraser(parent.get(), complain).erase(parent.get(), name, path);
    const auto removed = removeTree(parent.get(), name);
    return removed || complain(folder + "/" + removed.error().path, removed.error().reason);
}

/// A folder is held open for each level.
void allowManyDescriptors() {
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) == 0) {
        limit.rlim_cur = limit.rlim_max;
        ::setrlimit(RLIMIT_NOFILE, &limit);
    }
}

} // namespace

int main(int argc, char** argv) {
    Options options;
    std::vector<std::string> paths;
    bool takesOptions = true;
    for (const std::string& argument : std::vector<std::string>(argv + 1, argv + argc)) {
        if (!takesOptions || argument.size() < 2 || argument[0] != '-') {
            paths.push_back(argument);
            takesOptions = false;
        } else if (argument == "--") {
            takesOptions = false;
        } else if (argument == "--help") {
            std::fputs(kUsage, stdout);
            return 0;
        } else if (argument.find_first_not_of("rRfP", 1) != std::string::npos) {
            printComplaint("rm: unknown option " + argument);
            std::fputs(kUsage, stderr);
            return 1;
        } else {
            options.isRecursive |= argument.find_first_of("rR") != std::string::npos;
            options.isForced |= argument.find('f') != std::string::npos;
            options.overwrites |= argument.find('P') != std::string::npos;
        }
    }
    if (paths.empty() && !options.isForced) {
        std::fputs(kUsage, stderr);
        return 1;
    }
    allowManyDescriptors();
    bool isAllGone = true;
    for (const auto& path : paths)
        isAllGone = remove(path, options) && isAllGone;
    return isAllGone ? 0 : 1;
}
