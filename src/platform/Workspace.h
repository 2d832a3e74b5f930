#pragma once

#include "platform/FileManager.h"

#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace sweeply {

/// The application that opens a document.
struct DocumentOwner {
    std::string bundleIdentifier;
    std::string path; ///< of the application; empty when it is known but not installed
};

/// What the Mac's workspace tells of documents: which folders are shown as one file, and who opens what.
///
/// The target's applications say which document types they own; they are read once, at the first question that needs
/// them. Thread-safe.
class Workspace final {
  public:
    /// `applicationsFolder` is the target path below which applications are installed. `files` outlives this.
    Workspace(const FileManager& files, std::string applicationsFolder);

    /// Is the folder at `path` shown as a single item? Known by its extension, or by being a bundle inside. False for
    /// everything that is not a folder.
    [[nodiscard]] bool isFilePackageAtPath(std::string_view path) const;

    /// The application that opens the document at `path`, judged by the extension alone.
    [[nodiscard]] std::optional<DocumentOwner> applicationForFile(std::string_view path) const;

  private:
    void readDocumentTypes() const;
    void readDocumentTypesOf(const std::string& applicationPath) const;

    const FileManager& m_files;
    std::string m_applicationsFolder;

    mutable std::once_flag m_read;
    // Written under m_read only. Keys are extensions in lower case.
    mutable std::map<std::string, DocumentOwner, std::less<>> m_owners;
    mutable std::set<std::string, std::less<>> m_packageExtensions;
};

} // namespace sweeply
