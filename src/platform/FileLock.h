#pragma once

#include "platform/Error.h"
#include "platform/UniqueFd.h"

#include <string_view>

namespace sweeply {

class FileManager;

/// A lock between processes (and between threads), held while this lives. It is a file of its own that is made when
/// missing and stays: removing it would let two processes hold two different ones.
class FileLock final {
  public:
    /// Waits until the lock at `path` (a target path) is ours.
    static Result<FileLock> acquire(FileManager& fileManager, std::string_view path);

  private:
    explicit FileLock(UniqueFd file) : m_file(std::move(file)) {}

    UniqueFd m_file;
};

} // namespace sweeply
