#include "platform/ToolTable.h"

#include "platform/FileManager.h"

#include <array>
#include <sys/stat.h>
#include <unistd.h>

namespace sweeply {

namespace {

constexpr std::array<std::string_view, 4> kSystemFolders{"/usr/bin/", "/bin/", "/usr/sbin/", "/sbin/"};

bool isProgram(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && ::access(path.c_str(), X_OK) == 0;
}

/// A Mac names its version in this file; no other system has it.
ToolTable::Host hostOf(const FileManager& files) {
    const bool isMac = files.isHostRoot() && files.fileExistsAtPath("/System/Library/CoreServices/SystemVersion.plist");
    return isMac ? ToolTable::Host::Mac : ToolTable::Host::Other;
}

} // namespace

ToolTable::ToolTable(std::string libexecFolder, Host host) : m_libexecFolder(std::move(libexecFolder)), m_host(host) {}

ToolTable::ToolTable(std::string libexecFolder, const FileManager& files)
    : ToolTable(std::move(libexecFolder), hostOf(files)) {}

Result<std::string> ToolTable::programFor(std::string_view tool) const {
    const std::string path(tool);
    if (m_host == Host::Mac && isProgram(path))
        return path;

    const std::string name(tool.substr(tool.rfind('/') + 1));
    if (!name.empty()) {
        const std::string equivalent = m_libexecFolder + "/" + name;
        if (isProgram(equivalent))
            return equivalent;
    }
    if (tool.starts_with('/') && isProgram(path))
        return path;
    for (const std::string_view folder : kSystemFolders) {
        const std::string candidate = std::string(folder) + name;
        if (isProgram(candidate))
            return candidate;
    }
    return Failure(Error{ErrorKind::Unavailable, path, "there is no such tool on this machine"});
}

} // namespace sweeply
