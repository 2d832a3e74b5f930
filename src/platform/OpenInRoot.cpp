#include "platform/OpenInRoot.h"

#include "platform/UniqueFd.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <deque>
#include <fcntl.h>
#include <linux/openat2.h>
#include <string_view>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

namespace sweeply {

namespace {

constexpr int kMaximumLinks = 40; // what Linux follows before it says ELOOP

/// Puts the components of `path` before those that are still to come.
void prepend(std::deque<std::string>& components, std::string_view path) {
    std::deque<std::string> all;
    // "file/" is no file, and "link/" not the link itself.
    const bool mustBeFolder = path.ends_with('/') || path == "." || path.ends_with("/.");
    while (!path.empty()) {
        const auto slash = path.find('/');
        if (const auto component = path.substr(0, slash); !component.empty() && component != ".")
            all.emplace_back(component);
        path.remove_prefix(slash == std::string_view::npos ? path.size() : slash + 1);
    }
    if (mustBeFolder)
        all.emplace_back(".");
    components.insert(components.begin(), all.begin(), all.end());
}

} // namespace

int openInRoot(int root, const std::string& path, int flags, MiddleLinks links) {
    // Another process renaming folders makes the kernel give up on ".." with EAGAIN; trying again is what it asks for.
    constexpr int kAttempts = 128;
    static std::atomic<bool> kernelResolves = true;

    open_how how{};
    how.flags = static_cast<std::uint64_t>(flags | O_CLOEXEC);
    how.resolve = RESOLVE_IN_ROOT | RESOLVE_NO_MAGICLINKS;
    if (links == MiddleLinks::Refuse)
        how.resolve |= RESOLVE_NO_SYMLINKS;
    for (int attempt = 0; kernelResolves && attempt < kAttempts; ++attempt) {
        const long fd = ::syscall(SYS_openat2, root, path.c_str(), &how, sizeof how);
        if (fd >= 0)
            return static_cast<int>(fd);
        if (errno == ENOSYS || errno == EPERM) {
            // Not there, or hidden by a container's system call filter (which answers EPERM).
            if (errno == ENOSYS)
                kernelResolves = false;
            break;
        }
        if (errno != EAGAIN && errno != EINTR)
            return -1;
    }
    return openInRootByWalking(root, path, flags, links);
}

int openInRootByWalking(int root, const std::string& path, int flags, MiddleLinks links) {
    std::vector<UniqueFd> folders; // below the root, down to where we are
    const auto here = [&] { return folders.empty() ? root : folders.back().get(); };
    std::deque<std::string> components;
    prepend(components, path);
    int linksFollowed = 0;
    if (path.empty()) {
        errno = ENOENT;
        return -1;
    }

    while (!components.empty()) {
        const std::string name = std::move(components.front());
        components.pop_front();
        const bool isLast = components.empty();
        if (name == ".") // everything before it is a folder
            continue;
        if (name == "..") {
            if (!folders.empty())
                folders.pop_back();
            continue;
        }
        UniqueFd item(::openat(here(), name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
        if (!item)
            return -1;
        struct stat status {};
        if (::fstat(item.get(), &status) != 0)
            return -1;
        if (S_ISLNK(status.st_mode) && !(isLast && (flags & O_NOFOLLOW))) {
            std::array<char, PATH_MAX> destination;
            const ssize_t length = ::readlinkat(item.get(), "", destination.data(), destination.size());
            if (length < 0)
                return -1;
            if (links == MiddleLinks::Refuse || ++linksFollowed > kMaximumLinks) {
                errno = ELOOP;
                return -1;
            }
            const std::string_view text(destination.data(), static_cast<std::size_t>(length));
            if (text.starts_with('/'))
                folders.clear();
            prepend(components, text);
            continue;
        }
        if (isLast) // the flags decide; a link put here since we looked is not followed
            return ::openat(here(), name.c_str(), flags | O_NOFOLLOW | O_CLOEXEC);
        if (!S_ISDIR(status.st_mode)) {
            errno = ENOTDIR;
            return -1;
        }
        folders.push_back(std::move(item));
    }
    return ::openat(here(), ".", flags | O_CLOEXEC);
}

} // namespace sweeply
