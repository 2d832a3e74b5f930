#include "cli/HostFile.h"

#include "cli/Interrupt.h"
#include "platform/SystemCalls.h"
#include "platform/TargetPath.h"
#include "platform/TemporaryFiles.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <iostream>
#include <sys/stat.h>
#include <unistd.h>

namespace sweeply {

namespace {

constexpr mode_t kOwnerOnly = 0600;
constexpr const char* kStandard = "-";

Result<LocatedItem> located(const std::string& name) {
    const auto slash = name.rfind('/');
    const auto last = slash == std::string::npos ? name : name.substr(slash + 1);
    if (last.empty() || last == "." || last == "..")
        return Failure(Error{ErrorKind::WrongType, name.empty() ? "''" : name, "is no name for a file"});
    const auto folder = slash == std::string::npos ? std::string(".") : name.substr(0, slash + 1);
    UniqueFd parent(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!parent)
        return Failure(systemError(errno, name));
    return LocatedItem{std::move(parent), last};
}

/// Neither a device nor a link to one may be lost to a plan.
Result<void> mayTakePlace(const LocatedItem& item, const std::string& name, ExistingFile existing) {
    struct stat there {};
    if (::fstatat(item.parent.get(), item.name.c_str(), &there, AT_SYMLINK_NOFOLLOW) != 0)
        return {};
    if (existing == ExistingFile::Stays)
        return Failure(systemError(EEXIST, name));
    if (!S_ISREG(there.st_mode))
        return Failure(Error{ErrorKind::WrongType, name, "is no regular file, and is not written over"});
    return {};
}

} // namespace

Result<std::string> readHostFile(const std::string& name, std::size_t limit) {
    UniqueFd file(name == kStandard ? ::dup(STDIN_FILENO) : ::open(name.c_str(), O_RDONLY | O_CLOEXEC));
    if (!file)
        return Failure(systemError(errno, name));
    std::string contents;
    std::array<char, 65536> buffer;
    for (;;) {
        const ssize_t length = ::read(file.get(), buffer.data(), buffer.size());
        if (length < 0 && errno == EINTR && !interrupt::wasRequested())
            continue;
        if (length < 0)
            return Failure(systemError(errno, name));
        if (length == 0)
            return contents;
        contents.append(buffer.data(), static_cast<std::size_t>(length));
        if (contents.size() > limit)
            return Failure(Error{ErrorKind::TooLarge, name, "is too large"});
    }
}

Result<void> canWriteHostFile(const std::string& name, ExistingFile existing) {
    if (name == kStandard)
        return {};
    return located(name).and_then([&](const LocatedItem& item) { return mayTakePlace(item, name, existing); });
}

Result<void> writeHostFile(const std::string& name, const std::string& contents, ExistingFile existing) {
    if (name == kStandard) {
        std::cout << contents << std::flush; // what fails there is told at the end
        return {};
    }
    auto item = located(name);
    if (!item)
        return Failure(item.error());
    if (const auto may = mayTakePlace(*item, name, existing); !may)
        return may;
    auto file = TemporaryFile::make(SystemCalls::plain(), *std::move(item), kOwnerOnly, name);
    if (!file)
        return Failure(file.error());
    return file->write(contents, name).and_then([&] {
        return existing == ExistingFile::Stays ? file->takeFreePlace(name) : file->replaceItem(name);
    });
}

} // namespace sweeply
