#pragma once

#include "platform/Error.h"
#include "platform/UniqueFd.h"

#include <string>
#include <string_view>
#include <utility>

namespace sweeply {

class FileManager;

/// A lock between processes (and between threads), held while this lives. It is a file of its own that is made for it
/// and goes with it; one that a kill left behind is swept, or taken over by the next who wants the lock.
class FileLock final {
  public:
    /// Waits until the lock of the item at `path` (a target path, of which only the folder must exist) is ours.
    static Result<FileLock> acquire(FileManager& fileManager, std::string_view path) {
        return acquire(fileManager, path, true);
    }
    /// Unavailable when somebody else has it.
    static Result<FileLock> tryAcquire(FileManager& fileManager, std::string_view path) {
        return acquire(fileManager, path, false);
    }

    FileLock(FileLock&&) = default;
    FileLock& operator=(FileLock&&) = delete;
    ~FileLock();

  private:
    static Result<FileLock> acquire(FileManager& fileManager, std::string_view path, bool waits);
    FileLock(UniqueFd folder, std::string name, UniqueFd file)
        : m_folder(std::move(folder)), m_name(std::move(name)), m_file(std::move(file)) {}

    UniqueFd m_folder;
    std::string m_name;
    UniqueFd m_file;
};

} // namespace sweeply
