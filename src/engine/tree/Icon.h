#pragma once

#include <cstdint>

namespace sweeply {

/// Which picture stands for something. The faces draw them; the engine only says which.
enum class Icon : std::uint8_t {
    None,
    ItsOwn, ///< what the desktop shows for the item at the node's path
    GenericFolder,
    UserCaches,
    PhotoSyncCaches,
    SystemCaches,
    UserLogs,
    SystemLogs,
    Language,
    DevelopmentJunk,
    FinderJunk,
    Trashes,
    OtherJunk,
    WindowsJunk,
    Preferences,
    StartupItem,
    Package,
    WidgetLeftovers,
    Plugin,
};

} // namespace sweeply
