#include "platform/UserDefaults.h"

#include "platform/FileManager.h"
#include "platform/SystemLog.h"
#include "platform/TemporaryFiles.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <limits>
#include <sstream>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace sweeply {
namespace {

namespace fs = std::filesystem;
using plist::Value;

constexpr const char* kPath = "/Users/anna/Library/Preferences/com.brindle.Sweeply.plist";

struct RecordingLog final : SystemLog {
    void log(std::string_view line) override { lines.emplace_back(line); }
    std::vector<std::string> lines;
};

class UserDefaultsTest : public testing::Test {
  protected:
    UserDefaultsTest() {
        std::string pattern = fs::temp_directory_path() / "defaults-XXXXXX";
        m_root = mkdtemp(pattern.data());
        fs::create_directories(file().parent_path());
        m_fileManager = openFileManager();
    }
    ~UserDefaultsTest() override {
        fs::permissions(file().parent_path(), fs::perms::owner_all);
        fs::remove_all(m_root);
    }

    [[nodiscard]] std::unique_ptr<FileManager> openFileManager() const { return *FileManager::open(m_root); }
    [[nodiscard]] UserDefaults open() { return UserDefaults(*m_fileManager, kPath, m_log); }

    [[nodiscard]] fs::path file() const { return m_root + kPath; }
    [[nodiscard]] std::string bytes() const {
        std::ostringstream text;
        text << std::ifstream(file()).rdbuf();
        return text.str();
    }
    void write(std::string_view contents) { std::ofstream(file()) << contents; }
    [[nodiscard]] Value onDisk() const { return plist::parse(bytes()).value(); }
    [[nodiscard]] std::vector<fs::path> filesSetAside() const {
        std::vector<fs::path> found;
        for (const auto& entry : fs::directory_iterator(file().parent_path()))
            if (entry.path().filename().string().starts_with("com.brindle.Sweeply.plist.damaged-"))
                found.push_back(entry.path());
        return found;
    }

    std::string m_root;
    std::unique_ptr<FileManager> m_fileManager;
    RecordingLog m_log;
};

TEST_F(UserDefaultsTest, ChangesReachTheDiskAndEveryOtherKeyKeepsItsType) {
    const plist::Dictionary others({{"date", Value(plist::Date{12.5})},
                                    {"data", Value(plist::Data{std::string("\0\xFF", 2)})},
                                    {"real", Value(0.5)},
                                    {"huge", Value(std::numeric_limits<std::uint64_t>::max())},
                                    {"nested", Value(plist::Array{Value(plist::Dictionary({{"x", Value(false)}}))})}});
    write(plist::writeXml(Value(others)));
    chmod(file().c_str(), 0640);
    plist::Dictionary expected = *onDisk().asDictionary();

    UserDefaults defaults = open();
    defaults.setBool("UseSecureErase", true);
    defaults.setUnsigned("totalSizeSaved", 6'000'000'000);
    defaults.setObject("real", "replaced");
    defaults.removeObject("huge");
    EXPECT_EQ(onDisk(), Value(expected)) << "only synchronize writes";
    ASSERT_TRUE(defaults.synchronize());

    expected.set("real", "replaced");
    expected.remove("huge");
    expected.set("UseSecureErase", true);
    expected.set("totalSizeSaved", 6'000'000'000);
    for (const auto& [key, value] : expected.members())
        EXPECT_EQ(open().objectForKey(key), value) << key;
    EXPECT_EQ(onDisk().asDictionary()->members().size(), expected.members().size());
    EXPECT_TRUE(bytes().starts_with("bplist00"));
    EXPECT_EQ(fs::status(file()).permissions(), fs::perms(0640));
}

TEST_F(UserDefaultsTest, NothingIsWrittenWhenNothingChanged) {
    UserDefaults defaults = open();
    ASSERT_TRUE(defaults.synchronize());
    EXPECT_TRUE(fs::is_empty(file().parent_path()));

    write(plist::writeXml(Value(plist::Dictionary({{"a", Value(1)}}))));
    const std::string before = bytes();
    ASSERT_TRUE(defaults.synchronize());
    EXPECT_EQ(defaults.unsignedForKey("a"), 1U) << "what another process wrote is fetched";
    defaults.setUnsigned("a", 1);
    defaults.removeObject("absent");
    ASSERT_TRUE(defaults.synchronize());
    EXPECT_EQ(bytes(), before);
}

TEST_F(UserDefaultsTest, ValuesTypedByHandAreReadAsAMacReadsThem) {
    write(plist::writeBinary(Value(plist::Dictionary({{"yes", Value("YES")},
                                                      {"no", Value("NO")},
                                                      {"number", Value("123")},
                                                      {"real", Value(7.9)},
                                                      {"negative", Value(-1)},
                                                      {"list", Value(plist::Array{})}}))));
    const UserDefaults defaults = open();
    EXPECT_TRUE(defaults.boolForKey("yes"));
    EXPECT_FALSE(defaults.boolForKey("no"));
    EXPECT_FALSE(defaults.boolForKey("list"));
    EXPECT_EQ(defaults.unsignedForKey("number"), 123U);
    EXPECT_EQ(defaults.unsignedForKey("real"), 7U);
    EXPECT_EQ(defaults.unsignedForKey("negative"), 0U);
    EXPECT_EQ(defaults.stringForKey("real"), std::nullopt);
}

TEST_F(UserDefaultsTest, AdditionsFollowWhatWasDoneToTheKeyBefore) {
    UserDefaults mine = open();
    UserDefaults other = open();
    mine.addToUnsigned("sum", 5);
    mine.addToUnsigned("sum", 2);
    other.addToUnsigned("sum", 10);
    EXPECT_EQ(mine.unsignedForKey("sum"), 7U);
    ASSERT_TRUE(mine.synchronize());
    ASSERT_TRUE(other.synchronize());
    EXPECT_EQ(other.unsignedForKey("sum"), 17U);

    mine.setUnsigned("sum", 1);
    mine.addToUnsigned("sum", 2);
    ASSERT_TRUE(mine.synchronize());
    EXPECT_EQ(onDisk(), Value(plist::Dictionary({{"sum", Value(3)}})));
    mine.addToUnsigned("sum", std::numeric_limits<std::uint64_t>::max());
    mine.removeObject("sum");
    mine.addToUnsigned("sum", 4);
    ASSERT_TRUE(mine.synchronize());
    EXPECT_EQ(onDisk(), Value(plist::Dictionary({{"sum", Value(4)}})));
    mine.addToUnsigned("sum", std::numeric_limits<std::uint64_t>::max());
    EXPECT_EQ(mine.unsignedForKey("sum"), std::numeric_limits<std::uint64_t>::max());
}

TEST_F(UserDefaultsTest, TwoProcessesThatWriteManyTimesLoseNothing) {
    constexpr unsigned kRounds = 200;
    std::vector<pid_t> children;
    for (const char* name : {"first", "second"}) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            const auto fileManager = openFileManager();
            RecordingLog log;
            UserDefaults defaults(*fileManager, kPath, log);
            bool isWell = true;
            for (unsigned round = 1; round <= kRounds; ++round) {
                defaults.addToUnsigned("totalSizeSaved", round);
                defaults.setUnsigned(name, round);
                defaults.setBool(name + std::to_string(round), true);
                isWell = defaults.synchronize().has_value() && isWell;
            }
            _exit(isWell ? 0 : 1);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }
    const UserDefaults defaults = open();
    EXPECT_EQ(defaults.unsignedForKey("totalSizeSaved"), kRounds * (kRounds + 1));
    EXPECT_EQ(defaults.unsignedForKey("first"), kRounds);
    EXPECT_EQ(defaults.unsignedForKey("second"), kRounds);
    EXPECT_EQ(onDisk().asDictionary()->members().size(), 3 + 2 * kRounds);
}

TEST_F(UserDefaultsTest, ThreadsShareOneObject) {
    UserDefaults defaults = open();
    {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < 4; ++thread)
            threads.emplace_back([&] {
                for (int round = 0; round < 20; ++round) {
                    defaults.addToUnsigned("sum", 1);
                    EXPECT_TRUE(defaults.synchronize());
                    (void)defaults.unsignedForKey("sum");
                }
            });
    }
    EXPECT_EQ(open().unsignedForKey("sum"), 80U);
}

TEST_F(UserDefaultsTest, ADamagedFileIsSetAsideWithALogLine) {
    for (const std::string_view damage :
         {std::string_view("bplist00 damaged"), std::string_view("<plist><array/></plist>")}) {
        const auto before = filesSetAside();
        write(damage);
        m_log.lines.clear();
        UserDefaults defaults = open();
        ASSERT_TRUE(defaults.synchronize());
        EXPECT_EQ(bytes(), damage) << "without a change of ours it is not our business";

        defaults.setBool("mine", true);
        ASSERT_TRUE(defaults.synchronize());
        EXPECT_EQ(onDisk(), Value(plist::Dictionary({{"mine", Value(true)}})));
        const auto after = filesSetAside();
        ASSERT_EQ(after.size(), before.size() + 1) << "an earlier one is not replaced, even within one second";
        EXPECT_NE(m_log.lines.back().find(kPath), std::string::npos);
        EXPECT_NE(m_log.lines.back().find(".damaged-"), std::string::npos);
    }
}

TEST_F(UserDefaultsTest, ATargetThatCannotBeWrittenKeepsTheValuesInMemory) {
    write(plist::writeBinary(Value(plist::Dictionary({{"old", Value(1)}}))));
    UserDefaults defaults = open();
    fs::permissions(file().parent_path(), fs::perms::owner_read | fs::perms::owner_exec);
    defaults.addToUnsigned("sum", 2);
    for (int attempt = 0; attempt < 2; ++attempt) {
        const auto result = defaults.synchronize();
        ASSERT_FALSE(result);
        EXPECT_EQ(result.error().kind, ErrorKind::PermissionDenied);
        EXPECT_TRUE(result.error().path.starts_with(kPath));
    }
    EXPECT_EQ(m_log.lines.size(), 1U) << "said once";
    EXPECT_EQ(defaults.unsignedForKey("sum"), 2U);

    fs::permissions(file().parent_path(), fs::perms::owner_all);
    ASSERT_TRUE(defaults.synchronize());
    EXPECT_EQ(open().unsignedForKey("sum"), 2U) << "added once, not once an attempt";
}

TEST_F(UserDefaultsTest, WhatStandsInTheWayIsLeftAlone) {
    // A file that cannot be read may be whole: it is not taken for damaged.
    write("anything");
    fs::permissions(file(), fs::perms::none);
    UserDefaults defaults = open();
    defaults.setBool("mine", true);
    EXPECT_EQ(defaults.synchronize().error().kind, ErrorKind::PermissionDenied);
    fs::permissions(file(), fs::perms::owner_all);
    EXPECT_EQ(bytes(), "anything");
    EXPECT_TRUE(filesSetAside().empty());

    const fs::path victim = m_root + "/victim";
    const fs::path lock = file().parent_path() / lockName(file().filename());
    std::ofstream(victim) << "victim";
    fs::create_symlink(victim, lock);
    EXPECT_FALSE(defaults.synchronize());
    fs::remove(lock);
    ASSERT_EQ(mkfifo(lock.c_str(), 0600), 0);
    EXPECT_EQ(defaults.synchronize().error().kind, ErrorKind::WrongType);
}

} // namespace
} // namespace sweeply
