#pragma once

#include "appcore/ownership/EntryMatch.h"

#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

class FileManager;
class SWApplicationCore;
struct DirectoryEntry;
struct FolderConstants;

/// The folders whose entries may belong to applications by their names, the user's before the machine's, and by which
/// names. Immutable.
struct SearchedFolders {
    struct Group {
        SearchTerms terms = SearchTerms::None;
        std::vector<std::string> folders;
    };

    SearchedFolders(const FolderConstants& constants, const SWApplicationCore& applications);

    /// None for a folder that is not searched so.
    [[nodiscard]] SearchTerms termsOf(std::string_view folder) const;

    Group preferences;
    Group hostPreferences;
    Group applicationSupport;
    Group caches;
    Group logs;
    Group library;
    Group pdfServices;
    Group launchItems;
    Group growlTickets;
};

/// The entry of a searched folder as it is compared with names.
[[nodiscard]] SearchedEntry searchedEntry(const FileManager& files, std::string_view folder,
                                          const DirectoryEntry& entry, SearchTerms terms);

} // namespace sweeply
