#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace ditto {

/// Why a copy was given up, for the person.
class Failure final : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
    /// "PATH: what the system says of errno".
    [[nodiscard]] static Failure ofSystem(const std::string& path);
};

/// A new file that is removed again unless it is kept.
class NewFile final {
  public:
    /// Replaces a file or a link that is there, never what a link leads to. Throws Failure.
    explicit NewFile(std::string path);
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    [[nodiscard]] int fd() const { return m_fd; }
    [[nodiscard]] const std::string& path() const { return m_path; }
    void write(const std::string& bytes, std::uint64_t offset) const;
    /// Bytes of another file, shared on the disk where the file system can.
    void copyFrom(int source, std::uint64_t from, std::uint64_t size, std::uint64_t to) const;
    /// Owner, mode, extended attributes and times of another file. An owner that cannot be given is a failure: the
    /// copy would be somebody else's file.
    void takeAttributesFrom(int source) const;
    /// On the disk for good.
    void keep();

  private:
    std::string m_path;
    int m_fd = -1;
    bool m_isKept = false;
};

} // namespace ditto
