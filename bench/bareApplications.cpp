// What looking into applications cannot do without, and nothing else: two threads read the names and types of
// everything in each application, the first bytes of each file that may be an executable, and, with "sizes", ask for
// the size of each file in a localization or with a developer's name. To compare with, so without any of a program's
// care.
//   bareApplications FOLDER [sizes]
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <dirent.h>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

struct Found {
    std::uint64_t bytes = 0;
    std::uint64_t entries = 0;
    std::uint64_t executables = 0;
};

void look(int parent, const char* path, bool isMeasured, bool wantsSizes, Found& found) {
    const int folder = ::openat(parent, path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    alignas(dirent64) char buffer[8192];
    for (ssize_t length = 0; (length = ::getdents64(folder, buffer, sizeof buffer)) > 0;) {
        const dirent64* entry = nullptr;
        for (ssize_t at = 0; at < length; at += entry->d_reclen) {
            entry = reinterpret_cast<const dirent64*>(buffer + at);
            const std::string_view name = entry->d_name;
            if (name == "." || name == "..")
                continue;
            ++found.entries;
            if (entry->d_type == DT_DIR) {
                look(folder, entry->d_name, isMeasured || name.ends_with(".lproj"), wantsSizes, found);
            } else if (!isMeasured && name.find('.') == std::string_view::npos) {
                char head[8];
                const int file = ::openat(folder, entry->d_name, O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
                found.executables += ::pread(file, head, sizeof head, 0) == sizeof head && head[0] == '\xca' ? 1 : 0;
                ::close(file);
            } else if (struct stat status{}; wantsSizes &&
                                             (isMeasured || name.ends_with(".h") || name.ends_with(".nib")) &&
                                             ::fstatat(folder, entry->d_name, &status, AT_SYMLINK_NOFOLLOW) == 0) {
                found.bytes += static_cast<std::uint64_t>(status.st_size);
            }
        }
    }
    ::close(folder);
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2)
        return 2;
    const std::string top = argv[1];
    const bool wantsSizes = argc > 2;
    std::vector<std::string> applications;
    if (DIR* folder = ::opendir(top.c_str())) {
        while (const dirent* entry = ::readdir(folder)) {
            if (entry->d_name[0] != '.')
                applications.push_back(top + "/" + entry->d_name);
        }
        ::closedir(folder);
    }
    std::atomic<std::size_t> next = 0;
    const auto work = [&](Found& found) {
        for (std::size_t i = next++; i < applications.size(); i = next++)
            look(AT_FDCWD, applications[i].c_str(), false, wantsSizes, found);
    };
    Found ours;
    Found helpers;
    std::thread helper([&] { work(helpers); });
    work(ours);
    helper.join();
    std::printf("%llu entries, %llu executables, %llu bytes\n",
                static_cast<unsigned long long>(ours.entries + helpers.entries),
                static_cast<unsigned long long>(ours.executables + helpers.executables),
                static_cast<unsigned long long>(ours.bytes + helpers.bytes));
}
