#pragma once

#include "modules/IgnoreListWorld.h"
#include "platform/LocalServer.h"
#include "platform/Process.h"

#include <gtest/gtest.h>

namespace sweeply {

/// Writes an archive of the host with the members that archive.py beside this file understands.
inline void writeArchive(const std::string& path, std::vector<std::string> members) {
    members.insert(members.begin(), {SWEEPLY_TEST_ARCHIVER, path});
    const auto made = runProcess("/usr/bin/python3", members);
    ASSERT_TRUE(made && made->succeeded());
}

/// The maker's server: a feed and the archives that it names.
class ListServer {
  public:
    static constexpr const char* kName = "com.brindle.Sweeply.blacklist.plist";

    /// A list of this version in an archive of that name, and a feed that announces it.
    void announce(const std::string& version, const std::string& archive = "list.tgz",
                  const std::vector<std::string>& identifiers = {"com.example.new"}) const {
        server.serve("list", sharedListBytes(version, identifiers));
        writeArchive(server.folder.path(archive),
                     {"ReadMe=new", std::string("lists/") + kName + "@" + server.folder.path("list")});
        announceAt(version, server.url("/" + archive));
    }
    void announceAt(const std::string& version, const std::string& address) const {
        server.serve("feed", R"(<?xml version="1.0"?><rss version="2.0" xmlns:blacklist="urn:blacklist"><channel>)"
                             R"(<item><title>old</title><pubDate>Mon, 01 Jun 2009 10:00:00 +0000</pubDate>)"
                             R"(<enclosure url="http://127.0.0.1:1/" blacklist:version="0.1"/></item>)"
                             R"(<item><title>new</title><pubDate>Tue, 02 Jun 2009 10:00:00 +0000</pubDate>)"
                             R"(<enclosure url=")" +
                                 address + R"(" blacklist:version=")" + version + R"("/></item></channel></rss>)");
    }
    [[nodiscard]] std::string feed() const { return server.url("/feed"); }

    const LocalServer server;
};

} // namespace sweeply
