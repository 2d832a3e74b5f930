#pragma once

#include "platform/Error.h"
#include "platform/FileManager.h"
#include "platform/ReadProblems.h"

#include <memory>
#include <optional>
#include <string>

namespace sweeply {

/// Walks everything below one folder, parents before their contents, in the file system's order, through directory
/// descriptors: no link is followed and a folder swapped for a link during the walk leads nowhere.
///
/// Memory is flat: one open directory a level, nothing kept of what was passed. Use by one thread at a time.
class DirectoryEnumerator final {
  public:
    struct Entry {
        /// Relative to the folder walked; valid until the next call of next().
        const std::string& path;
        FileType type;
        /// 0 for a direct entry of the folder walked.
        int level;
    };

    /// What cannot be read below it is added to `problems`, which outlive the walk, with paths below `path`, its own.
    explicit DirectoryEnumerator(Result<UniqueFd> directory, ReadProblems* problems = nullptr, std::string path = {});
    DirectoryEnumerator(DirectoryEnumerator&&) noexcept;
    DirectoryEnumerator& operator=(DirectoryEnumerator&&) noexcept;
    ~DirectoryEnumerator();

    /// The next entry, or nothing at the end. Folders that cannot be opened are passed over; failure() tells.
    std::optional<Entry> next();
    /// Leaves the folder just returned unentered.
    void skipDescendants();
    /// Has the walk pass over an entry, by its path relative to the folder walked, as if it were not there.
    void leaveOut(std::string path);
    /// Attributes of the entry just returned, not following a link.
    [[nodiscard]] Result<FileAttributes> attributes() const;

    /// The folder that holds the entry just returned, open until the next call of next(); and the entry's name in it.
    [[nodiscard]] int folder() const;
    [[nodiscard]] std::string name() const;

    /// The first folder that could not be read, if any; its path is relative to the folder walked.
    [[nodiscard]] const std::optional<Error>& failure() const;

  private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace sweeply
