#include "platform/TemporaryFiles.h"

#include "platform/DirectoryReader.h"
#include "platform/FileWriting.h"
#include "platform/SystemCalls.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <random>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace sweeply {

namespace {

constexpr std::string_view kMark = ".sweeply-";
constexpr std::string_view kLock = "lock";
constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyz0123456789";
constexpr std::size_t kRandomLetters = 8;

Failure failed(std::string_view path) { return Failure(systemError(errno, path)); }

std::string markedName(const std::string& name) {
    std::string result = ".";
    result += name.substr(0, 200); // leaves room below the 255 bytes that a name may have
    result += kMark;
    return result;
}

/// Does `name` stand for this very file in the folder?
bool standsFor(int folder, const std::string& name, const UniqueFd& file) {
    struct stat named {};
    struct stat opened {};
    return ::fstatat(folder, name.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0 && ::fstat(file.get(), &opened) == 0 &&
           named.st_dev == opened.st_dev && named.st_ino == opened.st_ino;
}

/// The file, locked for us; nothing when somebody works on it or it cannot be told.
UniqueFd takeAbandoned(int folder, const std::string& name) {
    constexpr int kFlags = O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    UniqueFd file(::openat(folder, name.c_str(), O_RDWR | kFlags)); // to write, or some networks have no lock on it
    if (!file)
        file.reset(::openat(folder, name.c_str(), O_RDONLY | kFlags));
    if (!file || ::flock(file.get(), LOCK_EX | LOCK_NB) != 0 || !standsFor(folder, name, file))
        return {};
    return file;
}

} // namespace

std::string temporaryName(const std::string& name) {
    std::random_device random;
    std::string result = markedName(name);
    for (std::size_t i = 0; i < kRandomLetters; ++i)
        result += kLetters[random() % kLetters.size()];
    return result;
}

std::string lockName(const std::string& name) { return markedName(name).append(kLock); }

bool isTemporaryName(std::string_view name) {
    const auto mark = name.rfind(kMark);
    if (!name.starts_with('.') || mark == std::string_view::npos || mark < 2)
        return false;
    const auto end = name.substr(mark + kMark.size());
    return end == kLock || (end.size() == kRandomLetters && end.find_first_not_of(kLetters) == std::string_view::npos);
}

bool isTemporaryNameFor(const std::string& name, std::string_view temporary) {
    const std::string beginning = markedName(name);
    return isTemporaryName(temporary) && temporary.starts_with(beginning) &&
           temporary.find('.', beginning.size()) == std::string_view::npos;
}

Result<bool> lockFile(int folder, const std::string& name, const UniqueFd& file, std::string_view path, bool waits) {
    while (::flock(file.get(), waits ? LOCK_EX : LOCK_EX | LOCK_NB) != 0) {
        if (errno == EWOULDBLOCK)
            return Failure(Error{ErrorKind::Unavailable, std::string(path), "somebody else holds its lock"});
        if (errno != EINTR)
            return failed(path);
    }
    return standsFor(folder, name, file);
}

Result<TemporaryFile> TemporaryFile::make(SystemCalls& calls, LocatedItem item, mode_t mode, std::string_view path) {
    const int folder = item.parent.get();
    for (;;) {
        std::string name = temporaryName(item.name);
        UniqueFd file(calls.create(folder, name.c_str(), O_RDWR, mode));
        if (!file)
            return failed(path);
        giveToOwnerOf(calls, folder, file.get());
        // Where there are no locks, nobody will sweep either.
        if (const auto locked = lockFile(folder, name, file, path); !locked || *locked)
            return TemporaryFile(calls, std::move(item), std::move(name), std::move(file));
        // Somebody swept just now, before we had the lock.
    }
}

TemporaryFile::~TemporaryFile() {
    if (m_file)
        m_calls->unlinkat(m_item.parent.get(), m_name.c_str(), 0);
}

Result<void> TemporaryFile::write(std::string_view contents, std::string_view path) const {
    return writeAll(*m_calls, m_file.get(), contents, path);
}

Result<void> TemporaryFile::replaceItem(std::string_view path) {
    if (m_calls->fsync(m_file.get()) != 0)
        return failed(path);
    auto replaced = renameOver(*m_calls, m_item, m_name, path);
    if (replaced)
        m_file.reset();
    return replaced;
}

Result<void> TemporaryFile::takeFreePlace(std::string_view path) {
    const int folder = m_item.parent.get();
    if (m_calls->fsync(m_file.get()) != 0)
        return failed(path);
    // A second name and not a new one: not every file system can rename without replacing.
    if (m_calls->linkat(folder, m_name.c_str(), folder, m_item.name.c_str()) != 0 &&
        (errno == EEXIST || m_calls->renameat2(folder, m_name.c_str(), folder, m_item.name.c_str()) != 0))
        return failed(path);
    m_calls->unlinkat(folder, m_name.c_str(), 0);
    m_calls->fsync(folder);
    m_file.reset();
    return {};
}

void sweepTemporaryFiles(int folder, const std::function<bool(const std::string&)>& mayGo) {
    const UniqueFd listed(::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!listed)
        return;
    std::vector<std::string> names;
    DirectoryReader reader(listed.get());
    while (const auto entry = reader.next())
        if (entry->type == FileType::Regular && isTemporaryName(entry->name))
            names.emplace_back(entry->name);
    for (const auto& name : names)
        if (const auto file = takeAbandoned(folder, name); file && (!mayGo || mayGo(name)))
            ::unlinkat(folder, name.c_str(), 0);
}

} // namespace sweeply
