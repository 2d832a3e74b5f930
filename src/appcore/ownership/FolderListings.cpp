#include "appcore/ownership/FolderListings.h"

#include "platform/FileManager.h"

#include <algorithm>
#include <utility>

namespace sweeply {

FolderListing::FolderListing(std::vector<DirectoryEntry> entries) : m_entries(std::move(entries)) {
    m_begins.reserve(m_entries.size());
    for (const auto& entry : m_entries) {
        m_begins.push_back(m_names.size());
        m_names.append(entry.name).push_back('\0');
    }
}

std::vector<const DirectoryEntry*> FolderListing::withAnyOf(std::initializer_list<std::string_view> texts) const {
    std::vector<const DirectoryEntry*> found;
    for (const auto text : texts) {
        for (auto at = text.empty() ? std::string::npos : m_names.find(text); at != std::string::npos;) {
            const auto next = std::ranges::upper_bound(m_begins, at);
            found.push_back(&m_entries[static_cast<std::size_t>(next - m_begins.begin()) - 1]);
            at = next == m_begins.end() ? std::string::npos : m_names.find(text, *next);
        }
    }
    std::ranges::sort(found);
    const auto repeated = std::ranges::unique(found);
    found.erase(repeated.begin(), repeated.end());
    return found;
}

std::shared_ptr<const FolderListing> FolderListings::of(const std::string& folder) {
    const std::lock_guard lock(m_mutex);
    auto& listing = m_listings[folder];
    if (!listing)
        listing = std::make_shared<const FolderListing>(
            m_files.contentsOfDirectoryAtPath(folder).value_or(std::vector<DirectoryEntry>()));
    return listing;
}

} // namespace sweeply
