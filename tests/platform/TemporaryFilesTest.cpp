#include "platform/TemporaryFiles.h"

#include "platform/FileLock.h"
#include "platform/Volume.h"

#include <atomic>
#include <csignal>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>

namespace sweeply {
namespace {

class TemporaryFilesTest : public VolumeTest {
  protected:
    TemporaryFilesTest() { makeFolder("/folder"); }
    std::vector<std::string> names() const { return TestVolume::names("/folder"); }
    /// Does that in a process that a signal ends on the way.
    template<typename Work>
    void killedIn(const Work& work) {
        const pid_t child = ::fork();
        if (child == 0) {
            const rlimit none{0, 0};
            ::setrlimit(RLIMIT_CORE, &none);
            work();
            ::_exit(0);
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status));
    }
};

TEST_F(TemporaryFilesTest, KilledWriterLeavesTheOldFileAndTheSweepTakesTheNewOne) {
    write("/folder/file", "old");
    killedIn([this] {
        const rlimit limit{10'000, 10'000};
        ::setrlimit(RLIMIT_FSIZE, &limit); // the signal comes in the middle of the writing
        (void)files().writeAtomically("/folder/file", std::string(100'000, 'x'));
    });
    EXPECT_EQ(names().size(), 2U);
    EXPECT_EQ(read("/folder/file"), "old");
    files().sweepTemporaryFilesAtPath("/folder");
    EXPECT_EQ(names(), std::vector<std::string>{"file"});
    EXPECT_TRUE(files().writeAtomically("/folder/file", "new"));
    EXPECT_EQ(names(), std::vector<std::string>{"file"});
}

TEST_F(TemporaryFilesTest, SweepLeavesWhatIsInUseAndWhatIsNotOurs) {
    std::vector<std::string> kept{"file",
                                  "file.sweeply-abcdefgh",
                                  ".sweeply-abcdefgh",
                                  ".file.sweeply-abcdefg",
                                  ".file.sweeply-ABCDEFGH",
                                  ".file.sweeply-abcdefgh.old",
                                  ".file.sweeply-unlock",
                                  "file.lockfile",
                                  "file.ditto"};
    for (const auto& name : kept)
        write("/folder/" + name, "1");
    link("/folder/.link.sweeply-abcdefgh", "/victim");
    makeFolder("/folder/.folder.sweeply-abcdefgh");
    kept.insert(kept.end(), {".link.sweeply-abcdefgh", ".folder.sweeply-abcdefgh"});
    for (const char* name : {".file.sweeply-abcdefg1", ".a.sweeply-b.sweeply-00000000", ".file.sweeply-lock"})
        write("/folder/" + std::string(name), "1");
    const auto lock = FileLock::acquire(files(), "/folder/locked");
    const auto file =
        TemporaryFile::make(SystemCalls::plain(), files().locate("/folder/" + std::string(255, 'n')).value(), 0600, "");
    ASSERT_TRUE(lock && file);
    files().sweepTemporaryFilesAtPath("/folder", [](const std::string& name) { return !name.starts_with(".a."); });
    auto withThoseInUse = kept;
    withThoseInUse.insert(withThoseInUse.end(), {lockName("locked"), ".a.sweeply-b.sweeply-00000000"});
    const auto left = names();
    EXPECT_EQ(left.size(), withThoseInUse.size() + 1);
    EXPECT_THAT(withThoseInUse, testing::Each(testing::AnyOfArray(left)));
    files().sweepTemporaryFilesAtPath("/folder");
    EXPECT_EQ(names().size(), kept.size() + 2);
}

TEST_F(TemporaryFilesTest, LockIsOnesAtATimeAndLeavesNothing) {
    killedIn([this] {
        const auto lock = FileLock::acquire(files(), "/folder/file");
        std::raise(SIGKILL);
    });
    EXPECT_EQ(names(), std::vector<std::string>{lockName("file")});
    std::atomic<int> holders = 0;
    std::atomic<bool> isShared = false;
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < 200; ++round) {
                const auto lock = FileLock::acquire(files(), "/folder/file");
                if (!lock || holders.fetch_add(1) != 0)
                    isShared = true;
                std::this_thread::yield();
                holders.fetch_sub(1);
            }
        });
    }
    threads.clear();
    EXPECT_FALSE(isShared);
    EXPECT_TRUE(names().empty());
}

} // namespace
} // namespace sweeply
