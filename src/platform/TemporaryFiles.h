#pragma once

#include "platform/Error.h"
#include "platform/TargetRoot.h"
#include "platform/UniqueFd.h"

#include <functional>
#include <string>
#include <string_view>
#include <sys/types.h>

// Files that stand in a target's folders only while we work there. A kill leaves them behind, so they have names that
// nobody else uses, ".NAME.sweeply-LETTERS" and ".NAME.sweeply-lock", and whoever works on one holds a lock on it
// (flock), which ends with the process.

namespace sweeply {

class SystemCalls;

/// A name for what will take the place of the item `name`; different at every call, never longer than a name may be.
[[nodiscard]] std::string temporaryName(const std::string& name);
/// The name of the lock (FileLock) for the item `name`.
[[nodiscard]] std::string lockName(const std::string& name);
/// Is it a name that only the two above make?
[[nodiscard]] bool isTemporaryName(std::string_view name);
/// Was it made for the item `name`?
[[nodiscard]] bool isTemporaryNameFor(const std::string& name, std::string_view temporary);

/// Waits until the file is locked for this descriptor alone, and tells whether `name` still stands for it in the
/// folder: who had the lock before may have taken the file away. Without waiting, Unavailable while somebody else has
/// it.
[[nodiscard]] Result<bool> lockFile(int folder, const std::string& name, const UniqueFd& file, std::string_view path,
                                    bool waits = true);

/// A file beside the item that it is made for. It goes with this object unless it took the item's place.
class TemporaryFile final {
  public:
    /// Empty, and locked. Errors name `path`, the item's path as the caller knows it.
    static Result<TemporaryFile> make(SystemCalls& calls, LocatedItem item, mode_t mode, std::string_view path);

    TemporaryFile(TemporaryFile&&) = default;
    TemporaryFile& operator=(TemporaryFile&&) = delete;
    ~TemporaryFile();

    [[nodiscard]] const LocatedItem& item() const { return m_item; }
    [[nodiscard]] int descriptor() const { return m_file.get(); }
    Result<void> write(std::string_view contents, std::string_view path) const;
    /// Puts it in the item's place, on the disk for good.
    Result<void> replaceItem(std::string_view path);
    /// The same where nothing stands there; AlreadyExists otherwise.
    Result<void> takeFreePlace(std::string_view path);

  private:
    TemporaryFile(SystemCalls& calls, LocatedItem item, std::string name, UniqueFd file)
        : m_calls(&calls), m_item(std::move(item)), m_name(std::move(name)), m_file(std::move(file)) {}

    SystemCalls* m_calls;
    LocatedItem m_item;
    std::string m_name;
    UniqueFd m_file; ///< none once it took the item's place
};

/// Removes what processes that are gone left in the folder: regular files of such names on which nobody holds a lock.
/// `mayGo`, where there is one, is asked before each; what may not go stays until the next time.
void sweepTemporaryFiles(int folder, const std::function<bool(const std::string& name)>& mayGo = {});

} // namespace sweeply
