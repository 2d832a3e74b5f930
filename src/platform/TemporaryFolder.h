#pragma once

#include "platform/Error.h"

#include <string>

namespace sweeply {

/// A new empty folder of the host that only this user may enter, and that goes with this object, whatever is in it.
class TemporaryFolder final {
  public:
    /// Below $TMPDIR, or the system's own place for such things.
    [[nodiscard]] static Result<TemporaryFolder> make();

    TemporaryFolder(TemporaryFolder&& other) noexcept;
    TemporaryFolder& operator=(TemporaryFolder&&) = delete;
    ~TemporaryFolder();

    /// An absolute host path.
    [[nodiscard]] const std::string& path() const { return m_path; }

  private:
    explicit TemporaryFolder(std::string path) : m_path(std::move(path)) {}

    std::string m_path; ///< empty once moved from
};

} // namespace sweeply
