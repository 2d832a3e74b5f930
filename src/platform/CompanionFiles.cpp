#include "platform/CompanionFiles.h"

#include "platform/DirectoryReader.h"
#include "platform/UniqueFd.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace sweeply {

namespace {

constexpr std::string_view kPrefix = "._";
constexpr std::array<unsigned char, 4> kMagic{0x00, 0x05, 0x16, 0x07};
/// So many questions cost less than a list of a folder that may be long.
constexpr unsigned kAskedSingly = 16;

} // namespace

std::string companionName(std::string_view name) { return std::string(kPrefix).append(name); }

bool isCompanionFile(int folder, const std::string& name) {
    if (!name.starts_with(kPrefix))
        return false;
    struct stat status {};
    if (::fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0 || !S_ISREG(status.st_mode))
        return false;
    const UniqueFd file(::openat(folder, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!file)
        return errno == EACCES || errno == EPERM;
    std::array<unsigned char, kMagic.size()> beginning{};
    return ::pread(file.get(), beginning.data(), beginning.size(), 0) == ssize_t{kMagic.size()} && beginning == kMagic;
}

std::optional<std::string> CompanionFinder::companionOf(std::string_view name) {
    if (!m_listed && m_asked++ == kAskedSingly)
        list();
    if (m_listed && m_listed->empty())
        return std::nullopt;
    std::string companion = companionName(name);
    if ((m_listed && !m_listed->contains(companion)) || !isCompanionFile(m_folder, companion))
        return std::nullopt;
    return companion;
}

void CompanionFinder::list() {
    const UniqueFd folder(::openat(m_folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder)
        return; // asking singly goes on
    std::unordered_set<std::string> names;
    DirectoryReader reader(folder.get());
    while (const auto entry = reader.next())
        if (entry->type == FileType::Regular && std::string_view(entry->name).starts_with(kPrefix))
            names.insert(entry->name);
    if (reader.errorNumber() == 0)
        m_listed = std::move(names);
}

} // namespace sweeply
