// What a clean cannot do without, and nothing else: two threads add up the sizes of a tree, then two threads remove it.
// To compare with, so without any of a program's care: a link or a change on the way would lead it anywhere.
//   bareClean DIR
#include <condition_variable>
#include <cstdint>
#include <cstdio>
#include <dirent.h>
#include <fcntl.h>
#include <mutex>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

/// Folders that wait for one of two threads. Ends when none waits and nobody is at one.
class Folders {
  public:
    void add(std::string path) {
        const std::lock_guard lock(m_mutex);
        m_waiting.push_back(std::move(path));
        m_changed.notify_one();
    }
    /// False at the end. Whoever asks again is done with the last one.
    bool next(std::string& path, bool& isBusy) {
        std::unique_lock lock(m_mutex);
        m_busy -= isBusy ? 1 : 0;
        isBusy = false;
        m_changed.notify_all();
        m_changed.wait(lock, [&] { return !m_waiting.empty() || m_busy == 0; });
        if (m_waiting.empty())
            return false;
        path = std::move(m_waiting.back());
        m_waiting.pop_back();
        ++m_busy;
        isBusy = true;
        return true;
    }

  private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<std::string> m_waiting;
    int m_busy = 0;
};

template<typename Each>
void eachEntry(const std::string& path, Each each) {
    DIR* folder = ::opendir(path.c_str());
    if (!folder)
        return;
    while (const dirent* entry = ::readdir(folder)) {
        const std::string name = entry->d_name;
        if (name != "." && name != "..")
            each(::dirfd(folder), entry->d_type == DT_DIR, entry->d_name);
    }
    ::closedir(folder);
}

template<typename Work>
void byTwo(const std::string& top, Work work) {
    Folders folders;
    folders.add(top);
    const auto run = [&] {
        std::string path;
        bool isBusy = false;
        while (folders.next(path, isBusy))
            work(path, folders);
    };
    std::thread helper(run);
    run();
    helper.join();
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2)
        return 2;
    const std::string top = argv[1];
    std::mutex mutex;
    std::uint64_t total = 0;
    std::vector<std::string> all;
    byTwo(top, [&](const std::string& path, Folders& folders) {
        std::uint64_t sum = 0;
        eachEntry(path, [&](int folder, bool isFolder, const char* name) {
            struct stat status {};
            if (isFolder)
                folders.add(path + "/" + name);
            else if (::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) == 0)
                sum += static_cast<std::uint64_t>(status.st_size);
        });
        const std::lock_guard lock(mutex);
        total += sum;
    });
    byTwo(top, [&](const std::string& path, Folders& folders) {
        eachEntry(path, [&](int folder, bool isFolder, const char* name) {
            if (isFolder)
                folders.add(path + "/" + name);
            else
                ::unlinkat(folder, name, 0);
        });
        const std::lock_guard lock(mutex);
        all.push_back(path);
    });
    for (auto path = all.rbegin(); path != all.rend(); ++path) // a folder comes after those above it
        ::rmdir(path->c_str());
    std::printf("%llu\n", static_cast<unsigned long long>(total));
    return ::access(top.c_str(), F_OK) == 0 ? 1 : 0;
}
