#pragma once

#include "platform/Error.h"

#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

class FileManager;
class SystemLog;

/// The applications known to be unsafe to modify, as the program's maker lists them.
struct Blacklist {
    std::vector<std::string> identifiers;
    std::string version = "0.0.0";
};

/// Reads the list's property list; damaged or no dictionary is an error without a path.
[[nodiscard]] Result<Blacklist> parseBlacklist(std::string_view bytes);

/// The shared list: the newer one of that shipped with the program and that installed by an update, which lies in the
/// target user's home. Thread-safe.
class SharedIgnoreList final {
  public:
    static constexpr std::string_view kFileName = "com.brindle.Sweeply.blacklist.plist";

    /// Both outlive this. `shippedFile` is a host path, `installedFile` a path of the target. Empty until load().
    SharedIgnoreList(FileManager& files, std::string shippedFile, std::string installedFile, SystemLog& log);

    /// Reads the list anew; first brings a replacement that was cut short to its end, or back. What cannot be read is
    /// logged and counts as an empty list of version "0.0.0".
    void load();

    [[nodiscard]] bool contains(std::string_view identifier) const;
    /// Of the list in use.
    [[nodiscard]] std::string version() const;

    /// The moments of install() between which everything is on the disk.
    enum class Step { Written, OldSetAside, Replaced, Done };

    /// Puts a new list in place of the installed one, which is moved aside meanwhile and comes back if that fails. At
    /// every moment the old or the new list is whole. `reached` hears of each step. Then reads it.
    Result<void> install(std::string_view bytes, const std::function<void(Step)>& reached);

  private:
    void finishReplacement();
    [[nodiscard]] Blacklist readShipped() const;
    [[nodiscard]] Blacklist readInstalled() const;

    FileManager& m_files;
    const std::string m_shippedFile;
    const std::string m_installedFile;
    SystemLog& m_log;
    std::mutex m_fileMutex; ///< held while the installed file is replaced
    mutable std::mutex m_mutex;
    Blacklist m_list; ///< sorted; guarded by m_mutex
};

} // namespace sweeply
