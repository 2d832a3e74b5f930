#include "platform/UserDefaults.h"

#include "platform/RecordingLog.h"
#include "platform/TemporaryFiles.h"
#include "platform/Volume.h"

#include <gmock/gmock.h>
#include <limits>
#include <sys/wait.h>
#include <thread>

namespace sweeply {
namespace {

using plist::Value;
using testing::HasSubstr;

const std::string kFolder = "/Users/anna/Library/Preferences";
const std::string kPath = kFolder + "/com.brindle.Sweeply.plist";

class UserDefaultsTest : public VolumeTest {
  protected:
    UserDefaultsTest() { makeFolder(kFolder); }
    ~UserDefaultsTest() override { setMode(kFolder, 0700); }

    [[nodiscard]] UserDefaults open() { return UserDefaults(files(), kPath, m_log); }
    void writeList(const plist::Dictionary& list) const { write(kPath, plist::writeBinary(list)); }
    [[nodiscard]] Value onDisk() const { return plist::parse(read(kPath)).value(); }
    [[nodiscard]] std::ptrdiff_t filesSetAside() const {
        return std::ranges::count_if(names(kFolder), [](const std::string& name) {
            return name.starts_with("com.brindle.Sweeply.plist.damaged-");
        });
    }

    RecordingLog m_log;
};

TEST_F(UserDefaultsTest, WhatIsHeldHidesTheFileAndIsNeverWritten) {
    writeList(plist::Dictionary({{"switch", Value(true)}, {"sum", Value(1)}}));
    UserDefaults defaults = open();
    defaults.hold("switch", false);
    defaults.hold("absent", "held");
    defaults.setBool("switch", true);
    defaults.removeObject("absent");
    defaults.addToUnsigned("sum", 2);
    ASSERT_TRUE(defaults.synchronize());
    EXPECT_FALSE(defaults.boolForKey("switch"));
    EXPECT_EQ(defaults.stringForKey("absent"), "held");
    EXPECT_EQ(onDisk(), Value(plist::Dictionary({{"switch", Value(true)}, {"sum", Value(3)}})));
}

TEST_F(UserDefaultsTest, ChangesReachTheDiskAndEveryOtherKeyKeepsItsType) {
    const plist::Dictionary others({{"date", Value(plist::Date{12.5})},
                                    {"data", Value(plist::Data{std::string("\0\xFF", 2)})},
                                    {"real", Value(0.5)},
                                    {"huge", Value(std::numeric_limits<std::uint64_t>::max())},
                                    {"nested", Value(plist::Array{Value(plist::Dictionary({{"x", Value(false)}}))})}});
    write(kPath, plist::writeXml(Value(others)));
    setMode(kPath, 0640);
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
    EXPECT_TRUE(read(kPath).starts_with("bplist00"));
    EXPECT_EQ(files().attributesOfItemAtPath(kPath, Links::DontFollow)->mode, 0640U);
}

TEST_F(UserDefaultsTest, NothingIsWrittenWhenNothingChanged) {
    UserDefaults defaults = open();
    ASSERT_TRUE(defaults.synchronize());
    EXPECT_TRUE(names(kFolder).empty());
    write(kPath, "<plist version=\"1.0\"><dict><key>a</key><integer>1</integer></dict></plist>");
    const std::string before = read(kPath);
    ASSERT_TRUE(defaults.synchronize());
    EXPECT_EQ(defaults.unsignedForKey("a"), 1U) << "what another process wrote is fetched";
    defaults.setUnsigned("a", 1);
    defaults.removeObject("absent");
    ASSERT_TRUE(defaults.synchronize());
    EXPECT_EQ(read(kPath), before);
}

TEST_F(UserDefaultsTest, ValuesTypedByHandAreReadAsAMacReadsThem) {
    writeList(plist::Dictionary(
        {{"yes", "YES"}, {"no", "NO"}, {"number", "123"}, {"real", 7.9}, {"negative", -1}, {"list", plist::Array{}}}));
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
        if (child == 0) {
            const auto own = FileManager::open(host("")).value();
            UserDefaults defaults(*own, kPath, m_log);
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
    for (const std::string damage : {"bplist00 damaged", "<plist><array/></plist>"}) {
        const auto before = filesSetAside();
        write(kPath, damage);
        UserDefaults defaults = open();
        ASSERT_TRUE(defaults.synchronize());
        EXPECT_EQ(read(kPath), damage) << "without a change of ours it is not our business";
        defaults.setBool("mine", true);
        ASSERT_TRUE(defaults.synchronize());
        EXPECT_EQ(onDisk(), Value(plist::Dictionary({{"mine", Value(true)}})));
        EXPECT_EQ(filesSetAside(), before + 1) << "an earlier one is not replaced, even within one second";
        EXPECT_THAT(m_log.lines().back(), testing::AllOf(HasSubstr(kPath), HasSubstr(".damaged-")));
    }
}

TEST_F(UserDefaultsTest, ATargetThatCannotBeWrittenKeepsTheValuesInMemory) {
    writeList(plist::Dictionary({{"old", Value(1)}}));
    UserDefaults defaults = open();
    setMode(kFolder, 0500);
    defaults.addToUnsigned("sum", 2);
    for (int attempt = 0; attempt < 2; ++attempt) {
        const auto result = defaults.synchronize();
        ASSERT_FALSE(result);
        EXPECT_EQ(result.error().kind, ErrorKind::PermissionDenied);
        EXPECT_TRUE(result.error().path.starts_with(kPath));
    }
    EXPECT_EQ(m_log.lines().size(), 1U) << "said once";
    EXPECT_EQ(defaults.unsignedForKey("sum"), 2U);
    setMode(kFolder, 0700);
    ASSERT_TRUE(defaults.synchronize());
    EXPECT_EQ(open().unsignedForKey("sum"), 2U) << "added once, not once an attempt";
}

TEST_F(UserDefaultsTest, WhatStandsInTheWayIsLeftAlone) {
    // A file that cannot be read may be whole: it is not taken for damaged.
    write(kPath, "anything");
    setMode(kPath, 0);
    UserDefaults defaults = open();
    defaults.setBool("mine", true);
    EXPECT_EQ(defaults.synchronize().error().kind, ErrorKind::PermissionDenied);
    setMode(kPath, 0700);
    EXPECT_EQ(read(kPath), "anything");
    EXPECT_EQ(filesSetAside(), 0);
    const std::string lock = kFolder + "/" + lockName("com.brindle.Sweeply.plist");
    link(lock, m_folder + "/victim");
    EXPECT_FALSE(defaults.synchronize());
    remove(lock);
    ASSERT_EQ(::mkfifo(host(lock).c_str(), 0600), 0);
    EXPECT_EQ(defaults.synchronize().error().kind, ErrorKind::WrongType);
}

} // namespace
} // namespace sweeply
