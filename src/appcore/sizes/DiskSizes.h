#pragma once

#include "appcore/sizes/SizeDisplay.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace sweeply {

class FileManager;

/// What files and folders of the target are charged: the length of every file's data, each rounded up to whole
/// allocation blocks. Never fails: what is not there or cannot be read counts nothing. Nothing is cached.
///
/// Thread-safe: scans and removals of several modules ask at once. Calls block until the tree is read.
class DiskSizes final {
  public:
    /// Both must outlive this.
    DiskSizes(const FileManager& fileManager, const SystemVersion& version)
        : m_fileManager(fileManager), m_version(version) {}

    /// What everybody asks: the size of the file or the whole tree at `path`; 0 for no path.
    [[nodiscard]] std::uint64_t folderSizeAtPath(std::string_view path) const;
    /// A file's own size; else that of all below. A link in the tree is charged for itself, a folder nothing. Nothing
    /// is below a link at `path` itself.
    [[nodiscard]] std::uint64_t sizeOfFile(std::string_view path) const;
    /// sizeOfFile of the entry `name` of a folder that is open, for those who ask for many of one folder.
    [[nodiscard]] std::uint64_t sizeOfEntry(int folder, const std::string& name) const;
    /// The same for an entry that is known to be a folder; 0 for anything else.
    [[nodiscard]] std::uint64_t sizeOfFolderEntry(int folder, const std::string& name) const;
    /// The sum. What is listed twice, or stands in another listed folder, counts twice.
    [[nodiscard]] std::uint64_t sizeOfAllFilesAtPathes(std::span<const std::string> paths) const;
    /// The size by a plain walk that leaves out links which lead to folders or nowhere. To compare with.
    [[nodiscard]] std::uint64_t slowFolderSizeAtPath(std::string_view path) const;

    [[nodiscard]] SizeUnits units() const { return sizeUnitsOf(m_version); }

  private:
    [[nodiscard]] std::uint64_t charged(std::uint64_t size) const;

    const FileManager& m_fileManager;
    const SystemVersion& m_version;
};

} // namespace sweeply
