#include "modules/ignorelist/SharedListUpdater.h"

#include "modules/ListServer.h"
#include "modules/ignorelist/ListArchive.h"

#include <gmock/gmock.h>
#include <sys/wait.h>

namespace sweeply {
namespace {

using testing::HasSubstr;
using Step = SharedListUpdater::Step;

class SharedListUpdaterTest : public testing::Test {
  protected:
    SharedListUpdaterTest() { m_list.load(); }

    UpdateOutcome update() {
        SharedListUpdater updater(m_list, m_lists.http, m_lists.tools, m_world.log);
        return updater.update(m_server.feed(), "Agent").outcome;
    }
    std::string lastLine() const { return m_world.log.lines().empty() ? "" : m_world.log.lines().back(); }
    Result<std::string> unpacked(const std::string& name, const std::vector<std::string>& members) {
        writeArchive(m_folder.path(name), members);
        return fileFromArchive(m_lists.tools, m_folder.read(name), name, "wanted", {});
    }

    TestWorld m_world;
    IgnoreListWorld m_lists{m_world};
    ListServer m_server;
    TestFolder m_folder;
    const std::string m_shipped = m_world.files().rootPath() + IgnoreListWorld::kShipped;
    SharedIgnoreList m_list{m_world.files(), m_shipped, IgnoreListWorld::kInstalled, m_world.log};
};

TEST_F(SharedListUpdaterTest, NewerListIsInstalledFromEveryKindOfArchiveAndOnlyOnce) {
    EXPECT_EQ(m_list.version(), "1.0");
    const std::pair<const char*, const char*> archives[] = {{"1.1", "a.tgz"}, {"1.2", "b.tar.gz"}, {"1.10", "c.zip"}};
    for (const auto& [version, archive] : archives) {
        m_server.announce(version, archive);
        EXPECT_EQ(update(), UpdateOutcome::Installed) << lastLine();
        EXPECT_EQ(m_list.version(), version);
    }
    EXPECT_TRUE(m_list.contains("com.example.new"));
    EXPECT_FALSE(m_list.contains("com.example.shared"));
    EXPECT_EQ(update(), UpdateOutcome::AlreadyLatest);
    m_server.announce("1.9");
    EXPECT_EQ(update(), UpdateOutcome::AlreadyLatest);
    EXPECT_FALSE(m_world.exists(std::string(IgnoreListWorld::kInstalled) + ".bak"));
    SharedIgnoreList afterwards(m_world.files(), m_shipped, IgnoreListWorld::kInstalled, m_world.log);
    afterwards.load();
    EXPECT_EQ(afterwards.version(), "1.10");
}

TEST_F(SharedListUpdaterTest, WhatIsInTheArchiveCountsNotWhatTheFeedSaysOfIt) {
    m_server.announce("0.9");
    m_server.announceAt("2.0", m_server.server.url("/list.tgz"));
    EXPECT_EQ(update(), UpdateOutcome::AlreadyLatest);
    EXPECT_EQ(m_list.version(), "1.0");
}

TEST_F(SharedListUpdaterTest, WhatCannotBeReadLeavesTheListAsItWas) {
    const auto& server = m_server.server;
    const auto refuses = [&](const std::string& contents) {
        EXPECT_EQ(update(), UpdateOutcome::Error) << contents;
        EXPECT_THAT(lastLine(), HasSubstr("Error ocures while geting global black list")) << contents;
        EXPECT_EQ(m_list.version(), "1.0");
        EXPECT_FALSE(m_world.exists(IgnoreListWorld::kInstalled));
    };
    for (const char* feed : {"", "not XML", "<rss><channel><item>", "<rss version=\"2.0\"><channel/></rss>",
                             "<html><body>Log in to this hotel's network</body></html>"}) {
        server.serve("feed", feed);
        refuses(feed);
    }
    server.serve("text.tgz", "no archive");
    server.serve("text.zip", "no archive");
    server.serve("list", "no property list");
    writeArchive(server.folder.path("damaged.tgz"),
                 {std::string(ListServer::kName) + "@" + server.folder.path("list")});
    for (const char* archive : {"text.tgz", "text.zip", "damaged.tgz", "absent.tgz", "list", "endless", "short"}) {
        m_server.announceAt("2.0", server.url("/" + std::string(archive)));
        refuses(archive);
    }
}

TEST_F(SharedListUpdaterTest, ArchivesThatWouldWriteElsewhereOrFillTheDiskAreRefused) {
    for (const char* name : {"a.tgz", "a.zip"}) {
        EXPECT_EQ(unpacked(name, {"ReadMe=no", "x/wanted=yes", "y/wanted=later"}).value_or("nothing"), "yes") << name;
        EXPECT_EQ(unpacked(name, {"ReadMe=no", "wanted.txt=no"}).error().kind, ErrorKind::NotFound) << name;
        for (const char* bad : {"/tmp/x=1", "../x=1", "a/../../x=1", "l->/etc", "big*20000000"}) {
            const auto outcome = unpacked(name, {"wanted=yes", bad});
            ASSERT_FALSE(outcome) << name << " " << bad;
            EXPECT_EQ(outcome.error().kind, ErrorKind::Damaged) << outcome.error().message();
        }
        std::vector<std::string> many(600, "same=1");
        many.emplace_back("wanted=yes");
        EXPECT_FALSE(unpacked(name, many)) << name;
    }
    EXPECT_FALSE(unpacked("a.tgz", {"wanted->/etc/hostname"}));
    EXPECT_FALSE(unpacked("a.tgz", {"a\nwanted=yes", "../wanted=x"}));
    // A bomb of the compression itself: 40 MB that are 40 KB.
    EXPECT_FALSE(unpacked("a.tgz", {"x*40000000", "wanted=yes"}));
}

/// However the program ends in the middle, the old list or the new one is there afterwards, whole.
TEST_F(SharedListUpdaterTest, KilledAtAnyStepTheOldOrTheNewListIsWhole) {
    m_server.announce("1.1");
    ASSERT_EQ(update(), UpdateOutcome::Installed);
    m_server.announce("1.2");
    for (const Step last :
         {Step::Downloaded, Step::Unpacked, Step::Written, Step::OldSetAside, Step::Replaced, Step::Done}) {
        const pid_t child = ::fork();
        if (child == 0) {
            SharedListUpdater updater(m_list, m_lists.http, m_lists.tools, m_world.log, [&](Step step) {
                if (step == last)
                    ::_exit(7);
            });
            (void)updater.update(m_server.feed(), "Agent");
            ::_exit(0);
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_EQ(WEXITSTATUS(status), 7) << "the step was not reached";
        m_list.load();
        EXPECT_EQ(m_list.version(), last < Step::Replaced ? "1.1" : "1.2") << static_cast<int>(last);
        EXPECT_TRUE(m_list.contains("com.example.new"));
        for (const char* remainder : {".bak", ".new"})
            EXPECT_FALSE(m_world.exists(std::string(IgnoreListWorld::kInstalled) + remainder));
        // Back to the old list for the next round.
        m_world.target.makeFile(IgnoreListWorld::kInstalled, sharedListBytes("1.1", {"com.example.new"}));
        m_list.load();
    }
}

TEST_F(SharedListUpdaterTest, DamagedInstalledListIsSaidAndTheShippedOneCounts) {
    m_world.target.makeFile(IgnoreListWorld::kInstalled, "garbage");
    m_list.load();
    EXPECT_THAT(lastLine(), HasSubstr(IgnoreListWorld::kInstalled));
    EXPECT_EQ(m_list.version(), "1.0");
    m_server.announce("1.1");
    EXPECT_EQ(update(), UpdateOutcome::Installed);
}

} // namespace
} // namespace sweeply
