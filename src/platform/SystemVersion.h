#pragma once

#include "platform/Error.h"

#include <optional>
#include <string>
#include <string_view>

namespace sweeply {

class FileManager;

/// Which Mac OS X the target is: the generation that sizes, folders and tools depend on.
class SystemVersion final {
  public:
    /// Asks "/System/Library/CoreServices/SystemVersion.plist". NotFound when there is none (no Mac OS X system at this
    /// root), Damaged when it is no property list or tells no version.
    static Result<SystemVersion> read(const FileManager& fileManager);
    /// From "10.6.8" or "10.6"; nothing for what is no version of Mac OS X.
    static std::optional<SystemVersion> fromProductVersion(std::string_view productVersion);

    [[nodiscard]] const std::string& productVersion() const { return m_productVersion; }
    /// The version number of the application framework that came with this system. For one released after those known
    /// here, the last known.
    [[nodiscard]] double appKitVersion() const { return m_appKitVersion; }

    [[nodiscard]] bool isTiger() const;
    [[nodiscard]] bool isOnTigerOrBetter() const;
    [[nodiscard]] bool isOnLeopardOrBetter() const;
    [[nodiscard]] bool isSnowLeopardOrBetter() const;

  private:
    SystemVersion(std::string productVersion, double appKitVersion);

    std::string m_productVersion;
    double m_appKitVersion;
};

} // namespace sweeply
