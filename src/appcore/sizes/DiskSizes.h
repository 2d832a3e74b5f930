#pragma once

#include "appcore/sizes/SizeDisplay.h"
#include "platform/ItemIdentity.h"
#include "platform/TreeSize.h"

#include <cstdint>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>

namespace sweeply {

class FileManager;
struct FileAttributes;

/// What files and folders of the target are charged: the length of every file's data, each rounded up to whole
/// allocation blocks. Never fails: what is not there or cannot be read counts nothing, and what cannot be read is among
/// the target's ReadProblems. Nothing is cached.
///
/// Thread-safe: scans and removals of several modules ask at once. Calls block until the tree is read.
class DiskSizes final {
  public:
    /// Both must outlive this.
    DiskSizes(const FileManager& fileManager, const SystemVersion& version)
        : m_fileManager(fileManager), m_version(version) {}

    /// What everybody asks: the size of the file or the whole tree at `path`; 0 for no path.
    [[nodiscard]] std::uint64_t folderSizeAtPath(std::string_view path) const { return measure(path).size; }
    /// A file's own size; else that of all below. A link in the tree is charged for itself, a folder nothing. Nothing
    /// is below a link at `path` itself. With it, what the item is now; of nothing, that nobody looked.
    /// `met` is called with the folders in it. A stop ends it at once; the item is not whole then.
    [[nodiscard]] MeasuredItem measure(std::string_view path, const FolderMet& met = {},
                                       const std::stop_token& stop = {}) const;
    /// The same for an entry of a folder that is open, for those who ask for many of one folder. `path` is the entry's.
    [[nodiscard]] MeasuredItem measureEntry(int folder, const std::string& path) const;
    /// The same for what has these attributes and is no folder.
    [[nodiscard]] MeasuredItem measureFile(const FileAttributes& attributes) const;
    /// The sum. What is listed twice, or stands in another listed folder, counts twice.
    [[nodiscard]] std::uint64_t sizeOfAllFilesAtPathes(std::span<const std::string> paths) const;
    /// The size by a plain walk that leaves out links which lead to folders or nowhere. To compare with.
    [[nodiscard]] std::uint64_t slowFolderSizeAtPath(std::string_view path) const;

    [[nodiscard]] SizeUnits units() const { return sizeUnitsOf(m_version); }

    /// What so many bytes of a file are charged.
    [[nodiscard]] std::uint64_t charged(std::uint64_t size) const;

  private:
    [[nodiscard]] MeasuredItem measureItem(int folder, const char* name, const std::string& path,
                                           const FolderMet& met = {}, const std::stop_token& stop = {}) const;
    [[nodiscard]] MeasuredItem measureFolder(int folder, const char* name, const std::string& path,
                                             const FolderMet& met, const std::stop_token& stop) const;
    [[nodiscard]] MeasuredItem unreadable(int errorNumber, std::string_view path) const;
    /// Looks once more, to say what it is that could not be read.
    void tellWhatIsMissing(const std::string& path) const;

    const FileManager& m_fileManager;
    const SystemVersion& m_version;
};

} // namespace sweeply
