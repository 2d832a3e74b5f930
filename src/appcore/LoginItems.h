#pragma once

#include "formats/PropertyList.h"
#include "platform/Error.h"

#include <string>
#include <string_view>

namespace sweeply {

class FileManager;
class SystemLog;
struct FolderConstants;

/// What the target user has started at login: a list in the preferences of the login window, whose other contents stay
/// as they are. Thread-safe between processes; one thread at a time here.
class LoginItems final {
  public:
    /// All outlive this.
    LoginItems(FileManager& files, const FolderConstants& folders, SystemLog& log)
        : m_files(files), m_folders(folders), m_log(log) {}

    /// As they are stored now; items may be anything that a property list can hold.
    [[nodiscard]] plist::Array loginItemsList() const;
    [[nodiscard]] bool isListed(std::string_view path) const;
    /// False when the preferences cannot be written, which is logged.
    bool writeLoginItemsList(plist::Array list);
    /// Takes out every item that starts the application at exactly this path. True when that is written, also when
    /// there was none.
    bool removeLoginItemAtPath(std::string_view path);

    /// The file that holds the list, as it is now.
    [[nodiscard]] Result<std::string> listFile() const;
    /// Puts back the items of that path which an earlier `file` held, each in its old place in the list; nothing when
    /// one is listed. Where nothing but their going changed the file since, it is byte for byte the earlier one again.
    Result<void> putBack(std::string_view path, const std::string& file);

    /// The path that an item starts; empty for one that is no dictionary or names none.
    [[nodiscard]] static std::string pathOf(const plist::Value& item);

  private:
    [[nodiscard]] std::string domainFile() const;

    FileManager& m_files;
    const FolderConstants& m_folders;
    SystemLog& m_log;
};

} // namespace sweeply
