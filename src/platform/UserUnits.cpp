#include "platform/UserUnits.h"

#include "platform/FileManager.h"
#include "platform/Process.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <pwd.h>
#include <unistd.h>

namespace sweeply {

namespace {

constexpr std::size_t kLargestUnit = std::size_t{1} << 20U;

/// This machine's files, by the same careful calls as a target's.
Result<std::unique_ptr<FileManager>> hostFiles() { return FileManager::open("/"); }

std::string homeOfThisUser() {
    if (const char* home = std::getenv("HOME"); home && *home == '/')
        return home;
    const passwd* user = ::getpwuid(::getuid());
    return user ? user->pw_dir : "/";
}

} // namespace

UserUnits::UserUnits(Manager manager) : m_manager(std::move(manager)) {
    const char* configured = std::getenv("XDG_CONFIG_HOME");
    m_folder =
        (configured && *configured == '/' ? std::string(configured) : homeOfThisUser() + "/.config") + "/systemd/user";
}

std::vector<std::string> UserUnits::names() const {
    std::vector<std::string> names;
    const auto files = hostFiles();
    if (!files)
        return names;
    const auto entries = (*files)->contentsOfDirectoryAtPath(m_folder);
    for (const auto& entry : entries.value_or(std::vector<DirectoryEntry>()))
        names.push_back(entry.name);
    std::ranges::sort(names);
    return names;
}

Result<std::string> UserUnits::contents(const std::string& unit) const {
    const auto files = hostFiles();
    if (!files)
        return Failure(files.error());
    return (*files)->contentsAtPath(path(unit), kLargestUnit);
}

Result<void> UserUnits::write(const std::string& unit, std::string_view contents) const {
    const auto files = hostFiles();
    if (!files)
        return Failure(files.error());
    if (const auto made = (*files)->createDirectoryAtPath(m_folder); !made)
        return made;
    return (*files)->writeAtomically(path(unit), contents);
}

Result<void> UserUnits::remove(const std::string& unit) const {
    namespace fs = std::filesystem;
    std::error_code error;
    if (::unlink(path(unit).c_str()) != 0 && errno != ENOENT)
        return Failure(systemError(errno, path(unit)));
    for (const auto& entry : fs::directory_iterator(m_folder, error)) {
        const fs::path link = entry.path() / unit;
        std::error_code ignored;
        if ((entry.path().extension() == ".wants" || entry.path().extension() == ".requires") &&
            fs::is_symlink(fs::symlink_status(link, ignored)))
            ::unlink(link.c_str());
    }
    return {};
}

Result<std::string> UserUnits::systemctl(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "--user");
    ProcessOptions options;
    options.errors = OutputTo::Capture;
    const auto ended = runProcess("/usr/bin/systemctl", arguments, options);
    if (!ended)
        return Failure(Error{ErrorKind::Unavailable, {}, "there is no service manager on this machine"});
    if (ended->succeeded())
        return ended->output;
    const std::string line = ended->errors.substr(0, ended->errors.find('\n'));
    return Failure(Error{ErrorKind::Unavailable, {}, line.empty() ? "the service manager refused" : line});
}

} // namespace sweeply
