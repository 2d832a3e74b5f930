#pragma once

#include "formats/PropertyList.h"
#include "platform/Error.h"

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace sweeply {

class FileManager;
class SystemLog;

/// One preferences file of the target user.
///
/// Changes are in memory until synchronize() brings them to the disk. Several processes (the program, its watchers) may
/// use one file: only the keys changed here are written, every other key keeps its value and its type.
///
/// Thread-safe. A call may wait for another thread's synchronize(), and so for the disk.
class UserDefaults final {
  public:
    /// Reads the file at `path` (a target path); nothing there is no preferences. One that cannot be read is logged and
    /// counts as empty until synchronize().
    UserDefaults(FileManager& fileManager, std::string path, SystemLog& log);
    UserDefaults(const UserDefaults&) = delete;
    UserDefaults& operator=(const UserDefaults&) = delete;

    void setObject(std::string_view key, plist::Value value);
    void setBool(std::string_view key, bool value) { setObject(key, value); }
    void setUnsigned(std::string_view key, std::uint64_t value) { setObject(key, value); }
    void setString(std::string_view key, std::string_view value) { setObject(key, value); }
    void removeObject(std::string_view key);
    /// Adds to whatever stands on the disk at the next synchronize(), so that two processes adding to one sum both
    /// count. The sum stays at the greatest number rather than begin anew.
    void addToUnsigned(std::string_view key, std::uint64_t delta);

    /// Has `key` read as `value` from now on, whatever the file says and whatever is set; nothing of that is written.
    void hold(std::string_view key, plist::Value value);

    /// Brings the changes to the disk and fetches what others changed. Writes nothing when nothing changed.
    ///
    /// A damaged file is renamed to "NAME.damaged-YYYYMMDD-HHMMSS" before a new one takes its place, with a line in the
    /// log. After a failure all values stay as they are in memory and the next call tries again; the first failure is
    /// logged, later ones are only returned.
    Result<void> synchronize();

    [[nodiscard]] std::optional<plist::Value> objectForKey(std::string_view key) const;
    /// False when absent. As on a Mac, a number and a text such as "YES" count too.
    [[nodiscard]] bool boolForKey(std::string_view key) const;
    /// 0 when absent. As on a Mac, a real number and a text of digits count too.
    [[nodiscard]] std::uint64_t unsignedForKey(std::string_view key) const;
    [[nodiscard]] std::optional<std::string> stringForKey(std::string_view key) const;

  private:
    struct Removal {};
    struct Addition {
        std::uint64_t delta;
    };
    using Change = std::variant<plist::Value, Removal, Addition>;

    static void apply(const std::string& key, const Change& change, plist::Dictionary& values);
    void record(std::string_view key, Change change);
    [[nodiscard]] Result<plist::Dictionary> readFile() const;
    Result<void> writeChanges();
    Result<void> setDamagedFileAside(const std::string& reason);

    FileManager& m_fileManager;
    const std::string m_path;
    SystemLog& m_log;

    mutable std::mutex m_mutex; ///< guards what follows
    plist::Dictionary m_values; ///< what was read, with the changes applied
    std::map<std::string, Change, std::less<>> m_changes;
    std::map<std::string, plist::Value, std::less<>> m_held;
    bool m_failureWasLogged = false;
};

} // namespace sweeply
