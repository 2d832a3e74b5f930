#pragma once

#include "platform/FileAttributes.h"

#include <cstddef>
#include <initializer_list>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

class FileManager;

/// The entries of one folder, to be searched for many texts one after another. Immutable, so for any number of threads.
class FolderListing final {
  public:
    explicit FolderListing(std::vector<DirectoryEntry> entries);

    /// Those in whose names one of the texts stands, in the folder's order; an empty text stands in none.
    [[nodiscard]] std::vector<const DirectoryEntry*> withAnyOf(std::initializer_list<std::string_view> texts) const;

  private:
    std::vector<DirectoryEntry> m_entries;
    std::string m_names;               ///< all of them, each ended by the one byte that no name has but its end
    std::vector<std::size_t> m_begins; ///< of each in m_names
};

/// Folders as they were when they were first asked for: whoever looks for the files of many applications lists each
/// folder once. Thread-safe.
class FolderListings final {
  public:
    /// Outlives this.
    explicit FolderListings(const FileManager& files) : m_files(files) {}

    /// Empty where the folder cannot be listed.
    [[nodiscard]] std::shared_ptr<const FolderListing> of(const std::string& folder);

  private:
    const FileManager& m_files;
    std::mutex m_mutex;
    std::map<std::string, std::shared_ptr<const FolderListing>> m_listings; ///< guarded by m_mutex
};

} // namespace sweeply
