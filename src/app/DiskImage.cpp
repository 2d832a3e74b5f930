#include "app/DiskImage.h"

#include "platform/Alerts.h"
#include "platform/Localization.h"
#include "platform/TreeRemover.h"
#include "platform/UniqueFd.h"

#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <sys/statvfs.h>
#if defined(__linux__)
#include <sys/sysmacros.h>
#endif

namespace sweeply {

namespace {

namespace fs = std::filesystem;

bool isMountedFromFile([[maybe_unused]] dev_t device) {
#if defined(__linux__)
    constexpr unsigned kLoopDevices = 7;
    return major(device) == kLoopDevices;
#else
    return false;
#endif
}

std::size_t ask(Alerts& alerts, std::string title, std::string text, std::vector<std::string> buttons) {
    Alert alert;
    alert.title = std::move(title);
    alert.text = std::move(text);
    alert.buttons = std::move(buttons);
    alert.safeButton = alert.buttons.size() - 1;
    return alerts.runAlert(alert).button;
}

/// Removes what stands at `path`; nothing there is fine.
void removeAll(const fs::path& path) {
    const UniqueFd folder(::open(path.parent_path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (folder)
        (void)removeTree(folder.get(), path.filename().string()); // what stays makes the rename after it fail
}

/// Copies beside the place first: a disk that fills up meanwhile must not cost the old copy.
bool install(const fs::path& from, const fs::path& to) {
    const fs::path fresh = to.string() + ".new";
    std::error_code error;
    fs::create_directories(to.parent_path(), error);
    removeAll(fresh);
    fs::copy(from, fresh, fs::copy_options::recursive | fs::copy_options::copy_symlinks, error);
    if (!error) {
        removeAll(to);
        fs::rename(fresh, to, error);
    }
    if (error)
        removeAll(fresh);
    return !error;
}

} // namespace

bool applicationIsRunningFromDiskImage() {
    struct stat status {};
    struct statvfs volume {};
    const char* self = "/proc/self/exe";
    if (::stat(self, &status) != 0 || ::statvfs(self, &volume) != 0)
        return false;
    return (volume.f_flag & ST_RDONLY) != 0 || isMountedFromFile(status.st_dev);
}

std::optional<ProgramBundle> bundleOfProgram(const std::string& program, const std::string& home) {
    const fs::path folder = fs::path(program).parent_path().parent_path();
    if (folder.extension() != ".app" || folder.stem().empty() || home.empty())
        return std::nullopt;
    return ProgramBundle{folder.string(), folder.stem().string(), (fs::path(home) / "Applications").string()};
}

void handleApplicationLaunchFromDiskImage(const ProgramBundle& program, Alerts& alerts) {
    if (ask(alerts, localizedString("Sweeply is currently running from a disk image"),
            localizedString("Would you like to install Sweeply into your Applications folder before quitting?"),
            {localizedButton("Install"), localizedButton("Don't install")}) != 0)
        return;
    const fs::path target = fs::path(program.applicationsFolder) / formatText("%@.app", {program.name});
    std::error_code error;
    if (fs::exists(fs::symlink_status(target, error)) &&
        ask(alerts, localizedString("Sweeply is already installed on your system!"),
            localizedString("Would you like to overwrite Sweeply in your Applications folder?"),
            {localizedButton("Overwrite"), localizedButton("Don't overwrite")}) != 0)
        return;
    if (!install(program.path, target))
        ask(alerts, localizedString("Installation of Sweeply failed!"),
            localizedString("Try to copy it to a desired location manually. The recommended location is your "
                            "Applications folder."),
            {localizedButton("Ok")});
}

} // namespace sweeply
