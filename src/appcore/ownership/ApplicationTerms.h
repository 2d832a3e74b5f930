#pragma once

#include "platform/TargetPath.h"

#include <string>
#include <string_view>

namespace sweeply {

/// What an application is known by.
struct ApplicationTerms {
    std::string path;       ///< of its bundle
    std::string identifier; ///< empty where its Info.plist gives none
    std::string name;       ///< the one that it shows; empty where its Info.plist gives none

    /// What its bundle is called.
    [[nodiscard]] std::string_view fileName() const { return nameWithoutExtension(path); }
};

} // namespace sweeply
