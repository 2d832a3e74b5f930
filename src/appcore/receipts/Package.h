#pragma once

#include "formats/PropertyList.h"

#include <optional>
#include <string>
#include <vector>

namespace sweeply {

/// What the system remembers of an installer package, or a package file itself.
struct Package {
    enum class Type : int {
        Bundle = 0,   ///< a folder, as a package and as a receipt
        Flat = 1,     ///< a single file
        Database = 2, ///< a receipt in the system's database
    };

    std::string name = "Unknown";
    std::string path; ///< of the receipt or package; empty for one in the database
    Type type = Type::Bundle;
    std::string basedir = "/"; ///< what the file list is relative to
    std::string bundleID;
    /// The applications that it installed, as "Foo.app"; nothing until they were found out.
    std::optional<std::vector<std::string>> appNames = std::nullopt;

    [[nodiscard]] bool isApple() const { return bundleID.starts_with("com.apple."); }
    /// Does it serve several applications? One that serves none counts as well.
    [[nodiscard]] bool isMultiApp() const { return appNames && appNames->size() != 1; }
    /// "Package name = NAME app = (APPLICATIONS)".
    [[nodiscard]] std::string description() const;
    bool operator==(const Package& other) const { return name == other.name; }
};

/// The install location that a package's property list tells.
[[nodiscard]] std::string getPackageBaseDir(const plist::Value& info);

/// The applications whose files a list has: the last component of each path up to ".app/".
[[nodiscard]] std::vector<std::string> applicationNamesIn(const std::vector<std::string>& paths);

} // namespace sweeply
