#include "modules/logs/LogsController.h"

#include "modules/ModuleWorld.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

namespace sweeply {
namespace {

using namespace testing;

const std::string kLogs = "/Users/sam/Library/Logs";

class LogsTest : public ModuleTest {
  protected:
    explicit LogsTest(const char* version = "10.5.8") : ModuleTest(version) {
        m_world.target.makeFolder(kLogs);
        add();
    }
    void add() {
        m_logs = &m_world.add(2, std::make_unique<LogsController>(services(), *m_world.coordinator));
        for (const auto& module : m_logs->scanControllers())
            module->setTakesPartInScan(true);
    }
    std::string listed(std::size_t part = 0) { return textOf(*m_logs->scanControllers()[part]->rootNode()); }

    LogsController* m_logs = nullptr;
};

TEST_F(LogsTest, EntriesFromTheThresholdOnAreListed) {
    write(kLogs + "/small", std::string(8192, 'x'));
    write(kLogs + "/folder/1", std::string(8192, 'x'));
    write(kLogs + "/folder/2");
    write(kLogs + "/.DS_Store", std::string(20'000, 'x'));
    write("/Library/Logs/system.log", std::string(10'240, 'x'));
    m_world.scan();
    EXPECT_EQ(listed(0), "[x] folder 12288\n");
    EXPECT_EQ(listed(1), "[x] system.log 12288\n");
    EXPECT_TRUE(m_logs->scanControllers()[1]->priviligesNeededToClean());
    EXPECT_FALSE(m_logs->scanControllers()[1]->userDefaultsDefaultValue());
}

TEST_F(LogsTest, LogsAreEmptiedInPlaceAndKeepEverythingElse) {
    write("/Users/sam/Documents/thesis", "precious");
    for (const char* log : {"/a.log", "/$(touch pwned) \"quoted\".log", "/folder/deep/b.log"})
        write(kLogs + log, std::string(20'000, 'x'));
    write(kLogs + "/folder/empty", "");
    link(kLogs + "/folder/link", "/Users/sam/Documents/thesis");
    ASSERT_EQ(::mkfifo(host(kLogs + "/folder/pipe").c_str(), 0600), 0);
    setMode(kLogs + "/a.log", 0640);
    const auto before = m_world.files().attributesOfItemAtPath(kLogs + "/a.log", Links::DontFollow).value();
    m_world.scan();
    m_world.remove();
    const auto after = m_world.files().attributesOfItemAtPath(kLogs + "/a.log", Links::DontFollow).value();
    EXPECT_EQ(after.inode, before.inode);
    EXPECT_EQ(after.mode, before.mode);
    for (const char* log : {"/a.log", "/folder/deep/b.log", "/folder/empty"})
        EXPECT_EQ(read(kLogs + log), "\n") << log;
    EXPECT_TRUE(m_world.exists(kLogs + "/folder/pipe"));
    EXPECT_EQ(read("/Users/sam/Documents/thesis"), "precious");
    EXPECT_EQ(m_world.coordinator->filesFound(), 1U) << "the shell form cannot take the quoted name";
    m_world.scan();
    EXPECT_EQ(m_world.coordinator->filesFound(), 2U)
        << "three files of one block each are a folder above the threshold";
}

TEST_F(LogsTest, ReportersFoldersLoseTheirEntriesAndStay) {
    for (const char* folder : {"/CrashReporter", "/HangReporter"}) {
        write(kLogs + folder + "/one.crash", std::string(20'000, 'x'));
        write(kLogs + folder + "/more/two.crash");
    }
    m_world.scan();
    m_world.remove();
    for (const char* folder : {"/CrashReporter", "/HangReporter"})
        EXPECT_THAT(m_world.target.names(kLogs + folder), IsEmpty()) << folder;
}

TEST_F(LogsTest, VanishedEntriesSucceedAndOnesThatCannotBeEmptiedFail) {
    write(kLogs + "/gone.log", std::string(20'000, 'x'));
    write(kLogs + "/folder/1.log", std::string(20'000, 'x'));
    m_world.scan();
    m_world.target.remove(kLogs + "/gone.log");
    setMode(kLogs + "/folder/1.log", 0400);
    m_world.remove();
    setMode(kLogs + "/folder/1.log", 0700);
    EXPECT_EQ(listed(), "[x] folder 20480\n");
    std::vector<std::string> inTheWay;
    for (const auto& report : m_world.gate.reports())
        inTheWay.push_back(report.outcome.error.path);
    EXPECT_THAT(inTheWay, testing::UnorderedElementsAre("", kLogs + "/folder/1.log"));
}

TEST_F(LogsTest, MissingFolderIsMadeAndUncheckedItemsAreRemembered) {
    m_world.target.remove(kLogs);
    m_world.scan();
    EXPECT_TRUE(m_world.exists(kLogs));
    EXPECT_THAT(m_problems, IsEmpty());
    write(kLogs + "/a.log", std::string(20'000, 'x'));
    ignoreList().uncheckedItems().addKeys({kLogs + "/a.log"}, "Logs");
    m_world.scan();
    EXPECT_EQ(listed(), "[ ] a.log 20480\n");
}

} // namespace
} // namespace sweeply
