// SweeplyHelperTool [-v] [-cleanTrashes] [-cleanMacOSJunk] [-cleanWinJunk]
//
// Works while the program does not run. Started without switches, when the Trash changes, it offers to uninstall the
// applications that came into it. Started with switches, when a volume is mounted, it cleans that volume.
#include "platform/SessionBus.h"
#include "platform/SystemLog.h"
#include "tools/SweeplyHelperTool/MountedVolumes.h"
#include "tools/SweeplyHelperTool/TrashedApplications.h"

#include <cstdio>
#include <cstdlib>
#include <pwd.h>
#include <unistd.h>

namespace {

using namespace sweeply;

constexpr const char* kVersion = "1.2";
constexpr const char* kUninstall = "uninstall";
constexpr std::chrono::milliseconds kPatience{3000};

constexpr const char* kUsage =
    "usage: SweeplyHelperTool [-v] [-cleanTrashes] [-cleanMacOSJunk] [-cleanWinJunk]\n"
    "                         [-mounts FILE] [-volumesBelow FOLDER]...\n"
    "  -v                   print the version\n"
    "  -clean...            clean newly mounted volumes: of trash, of what the Mac leaves on them, of what\n"
    "                       Windows leaves; without one of these, offer to uninstall trashed applications\n"
    "  -mounts FILE         the table of mounts, in place of the kernel's\n"
    "  -volumesBelow FOLDER where volumes are mounted, in place of /media, /run/media, /mnt and /Volumes\n";

struct Options {
    helper::Cleaners cleaners;
    std::string mounts = "/proc/self/mountinfo";
    std::vector<std::string> folders;
};

std::string homeFolder() {
    if (const char* home = std::getenv("HOME"); home && *home == '/')
        return home;
    const passwd* user = ::getpwuid(::getuid());
    return user ? user->pw_dir : std::string();
}

int offerUninstallation(FileManager& files, SystemLog& log) {
    // First: what nobody could be told of must not count as dealt with.
    const auto bus = SessionBus::connect(log);
    if (!bus)
        return 1;
    const auto applications = helper::newlyTrashedApplications(files, homeFolder(), kPatience, log);
    if (applications.empty())
        return 0;
    Result<void> told;
    if (bus->isOwned()) {
        told = bus->post({kUninstall, applications});
    } else {
        std::vector<std::string> request{kUninstall};
        request.insert(request.end(), applications.begin(), applications.end());
        told = bus->openInRunning(request);
    }
    if (!told)
        log.log(told.error().message());
    return told ? 0 : 1;
}

int cleanNewVolumes(FileManager& files, const Options& options, SystemLog& log) {
    const auto volumes = helper::mountedVolumes(options.mounts, options.folders);
    for (const auto& volume : helper::newlyMounted(files, homeFolder(), volumes, log))
        helper::cleanVolume(volume.mountPoint, options.cleaners, files, homeFolder(), log);
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    Options options;
    bool cleans = false;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        if (word == "-v") {
            std::puts(kVersion);
            return 0;
        }
        if (word == "--help") {
            std::fputs(kUsage, stdout);
            return 0;
        }
        if (word == "-cleanTrashes") {
            options.cleaners.trashes = cleans = true;
        } else if (word == "-cleanMacOSJunk") {
            options.cleaners.macOSJunk = cleans = true;
        } else if (word == "-cleanWinJunk") {
            options.cleaners.winJunk = cleans = true;
        } else if (word == "-mounts" && i + 1 < argc) {
            options.mounts = argv[++i];
        } else if (word == "-volumesBelow" && i + 1 < argc) {
            options.folders.emplace_back(argv[++i]);
        } else {
            std::fputs(kUsage, stderr);
            return 1;
        }
    }
    if (options.folders.empty())
        options.folders = {"/media", "/run/media", "/mnt", "/Volumes"};
    SyslogLog log(SyslogLog::Copy::StandardError);
    const auto files = FileManager::open("/");
    if (!files) {
        log.log(files.error().message());
        return 1;
    }
    return cleans ? cleanNewVolumes(**files, options, log) : offerUninstallation(**files, log);
}
