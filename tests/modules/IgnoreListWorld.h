#pragma once

#include "appcore/SWApplicationCore.h"
#include "engine/TestWorld.h"
#include "modules/ignorelist/IgnoreListController.h"

namespace sweeply {

/// The property list of a shared list.
inline std::string sharedListBytes(const std::string& version, const std::vector<std::string>& identifiers) {
    return plist::writeXml(plist::Dictionary({{"BRblacklist", plist::arrayOf(identifiers)}, {"Version", version}}));
}

/// What an ignore list works with over a test's world: version 1.0 of the shared list came with the program.
class IgnoreListWorld {
  public:
    explicit IgnoreListWorld(TestWorld& testWorld) : world(testWorld) {
        world.target.makeFile(kShipped, sharedListBytes("1.0", {"com.example.shared"}));
    }

    IgnoreListServices services(UserDefaults& defaults) {
        return {defaults,
                world.files(),
                applications,
                world.alerts,
                world.loop,
                world.log,
                http,
                tools,
                world.files().rootPath() + kShipped,
                kInstalled,
                [] { return std::string("Jun 2, 2009 10:00:00"); },
                servers};
    }

    static constexpr const char* kShipped = "/usr/share/sweeply/com.brindle.Sweeply.blacklist.plist";
    static constexpr const char* kInstalled =
        "/Users/sam/Library/Application Support/Sweeply/com.brindle.Sweeply.blacklist.plist";

    TestWorld& world;
    SWApplicationCore applications{world.files(), world.folders, nullptr, world.log};
    HttpClient http{SWEEPLY_LIBEXEC "/fetch", std::chrono::seconds(60)};
    ToolTable tools{SWEEPLY_LIBEXEC, ToolTable::Host::Other};
    MakersServers servers{{}, {}, "Agent", {"Sweeply", "1.0", "10.60"}};
};

} // namespace sweeply
