#include "modules/logs/LogsController.h"

#include "modules/ModuleWorld.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

namespace sweeply {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

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
    write(kLogs + "/a.log", std::string(20'000, 'x'));
    write(kLogs + "/$(touch pwned) \"quoted\".log", std::string(20'000, 'x'));
    write(kLogs + "/folder/deep/b.log", std::string(20'000, 'x'));
    write(kLogs + "/folder/empty", "");
    m_world.target.makeLink(kLogs + "/folder/link", "/Users/sam/Documents/thesis");
    ASSERT_EQ(::mkfifo(host(kLogs + "/folder/pipe").c_str(), 0600), 0);
    fs::permissions(host(kLogs + "/a.log"), fs::perms(0640));
    struct stat before {};
    ASSERT_EQ(::stat(host(kLogs + "/a.log").c_str(), &before), 0);

    m_world.scan();
    m_world.remove();

    struct stat after {};
    ASSERT_EQ(::stat(host(kLogs + "/a.log").c_str(), &after), 0);
    EXPECT_EQ(after.st_ino, before.st_ino);
    EXPECT_EQ(after.st_mode, before.st_mode);
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
    for (const char* folder : {"/CrashReporter", "/HangReporter"}) {
        EXPECT_TRUE(m_world.exists(kLogs + folder));
        EXPECT_TRUE(fs::is_empty(host(kLogs + folder))) << folder;
    }
}

TEST_F(LogsTest, VanishedEntriesSucceedAndOnesThatCannotBeEmptiedFail) {
    write(kLogs + "/gone.log", std::string(20'000, 'x'));
    write(kLogs + "/folder/1.log", std::string(20'000, 'x'));
    m_world.scan();
    m_world.target.remove(kLogs + "/gone.log");
    fs::permissions(host(kLogs + "/folder/1.log"), fs::perms::owner_read);
    m_world.remove();
    fs::permissions(host(kLogs + "/folder/1.log"), fs::perms::owner_all);
    if (::geteuid() == 0 && read(kLogs + "/folder/1.log") == "\n")
        GTEST_SKIP() << "this user may write what it likes";
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
