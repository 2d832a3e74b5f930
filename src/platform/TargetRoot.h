#pragma once

#include "platform/Error.h"
#include "platform/UniqueFd.h"

#include <string>
#include <string_view>

namespace sweeply {

class SystemCalls;

/// An item by the folder that holds it, open without read or write access, and its name there.
struct LocatedItem {
    UniqueFd parent;
    std::string name;
};

/// The target's root folder, held open: every path of the target is resolved from here, and no link leads out of it.
///
/// Thread-safe: nothing changes after open().
class TargetRoot final {
  public:
    /// The folder `root` of the host.
    static Result<TargetRoot> open(const std::string& root, SystemCalls& calls);

    /// Opens the item at `path`, an absolute target path, with the flags of open(2).
    [[nodiscard]] Result<UniqueFd> openItem(std::string_view path, int flags) const;
    /// The item need not exist; its folder must.
    [[nodiscard]] Result<LocatedItem> locate(std::string_view path) const;
    /// The root folder itself, for the at() family of calls.
    [[nodiscard]] int descriptor() const { return m_fd.get(); }

    /// By which calls the target is changed.
    [[nodiscard]] SystemCalls& calls() const { return *m_calls; }

    /// The root's own path on the host, all links resolved.
    [[nodiscard]] const std::string& path() const { return m_path; }
    /// Where an existing item lies on the host; a link in the last component is the item.
    [[nodiscard]] Result<std::string> hostPath(std::string_view path) const;
    /// Where an item that was opened at `path` lies in the target, all links resolved.
    [[nodiscard]] Result<std::string> placeOf(const UniqueFd& item, std::string_view path) const;

  private:
    TargetRoot(UniqueFd fd, std::string path, SystemCalls& calls)
        : m_fd(std::move(fd)), m_path(std::move(path)), m_calls(&calls) {}

    UniqueFd m_fd;
    std::string m_path;
    SystemCalls* m_calls;
};

} // namespace sweeply
