#pragma once

#include "platform/UniqueFd.h"

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace sweeply {

/// A list of short names, written as one text with spaces between them.
inline std::vector<std::string> words(const std::string& text) {
    std::istringstream in(text);
    return {std::istream_iterator<std::string>(in), {}};
}

/// A folder of its own for one test, and a short vocabulary to fill it. Paths are relative to it; folders above an item
/// are made with it.
class TestFolder {
  public:
    TestFolder() {
        m_root = std::filesystem::temp_directory_path() / "test.XXXXXX";
        if (!::mkdtemp(m_root.data()))
            std::abort();
        m_fd.reset(::open(m_root.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    }
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;
    ~TestFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_root, ignored);
    }

    [[nodiscard]] std::string path(const std::string& name = "") const {
        return name.empty() ? m_root : m_root + '/' + name;
    }
    [[nodiscard]] int fd() const { return m_fd.get(); }
    [[nodiscard]] bool contains(const std::string& name) const {
        return std::filesystem::symlink_status(path(name)).type() != std::filesystem::file_type::not_found;
    }

    [[nodiscard]] std::vector<std::string> names(const std::string& name = "") const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(path(name)))
            names.push_back(entry.path().filename());
        return names;
    }
    [[nodiscard]] std::string read(const std::string& name) const {
        std::ostringstream text;
        text << std::ifstream(path(name), std::ios::binary).rdbuf();
        return text.str();
    }

    void makeFolder(const std::string& name) const { std::filesystem::create_directories(path(name)); }
    void write(const std::string& name, const std::string& contents) const {
        std::filesystem::create_directories(std::filesystem::path(path(name)).parent_path());
        std::ofstream(path(name), std::ios::binary) << contents;
    }
    void makeFile(const std::string& name, std::size_t size = 1) const { write(name, std::string(size, 'x')); }
    void makeLink(const std::string& name, const std::string& destination) const {
        std::filesystem::create_directories(std::filesystem::path(path(name)).parent_path());
        std::filesystem::create_symlink(destination, path(name));
    }
    void remove(const std::string& name) const { std::filesystem::remove_all(path(name)); }
    void setMode(const std::string& name, mode_t mode) const { ::chmod(path(name).c_str(), mode); }

    /// Folders "d" in each other, each with a file of 1 byte before and behind it; deeper than a path can be long.
    /// Returns how many items were made.
    int makeDeepTree(const std::string& name, int levels) const {
        makeFolder(name);
        UniqueFd folder(::open(path(name).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        for (int i = 0; i < levels; ++i) {
            for (const char* file : {"before", "zbehind"})
                (void)!::write(UniqueFd(::openat(folder.get(), file, O_WRONLY | O_CREAT | O_CLOEXEC, 0644)).get(), "x",
                               1);
            ::mkdirat(folder.get(), "d", 0755);
            folder = UniqueFd(::openat(folder.get(), "d", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        }
        return 3 * levels;
    }

  private:
    std::string m_root;
    UniqueFd m_fd;
};

/// The process's limit of open descriptors, lowered for one test.
class FewDescriptors final {
  public:
    explicit FewDescriptors(rlim_t limit) {
        ::getrlimit(RLIMIT_NOFILE, &m_before);
        const rlimit few{limit, m_before.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &few);
    }
    FewDescriptors(const FewDescriptors&) = delete;
    FewDescriptors& operator=(const FewDescriptors&) = delete;
    ~FewDescriptors() { ::setrlimit(RLIMIT_NOFILE, &m_before); }

  private:
    rlimit m_before{};
};

} // namespace sweeply
