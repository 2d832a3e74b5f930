#pragma once

#include <cstddef>
#include <sys/types.h>

namespace sweeply {

/// The system calls that change a disk, each under its own name with its own result and errno, and one place before
/// them all: who derives from this can count them, have one fail, or end the program there. Thread-safe.
class SystemCalls {
  public:
    virtual ~SystemCalls() = default;
    /// The plain ones.
    static SystemCalls& plain();

    /// openat(2) of a new file.
    int create(int folder, const char* name, int flags, mode_t mode);
    int mkdirat(int folder, const char* name, mode_t mode);
    /// Without replacing anything.
    int renameat2(int from, const char* name, int to, const char* newName);
    /// Replacing a file.
    int renameat(int from, const char* name, int to, const char* newName);
    int linkat(int from, const char* name, int to, const char* newName);
    int unlinkat(int folder, const char* name, int flags);
    ssize_t write(int file, const void* bytes, std::size_t size);
    int ftruncate(int file, off_t size);
    /// Has the disk keep room for the file to grow to so many bytes.
    int reserve(int file, std::size_t size);
    int fsync(int file);
    int fdatasync(int file);
    int fchown(int file, uid_t owner, gid_t group);
    int fchmod(int file, mode_t mode);

  private:
    /// Called before each: 0 has it made, anything else is the error number that it fails with.
    virtual int before(const char* /*call*/) { return 0; }
    bool mayCall(const char* call);
};

} // namespace sweeply
