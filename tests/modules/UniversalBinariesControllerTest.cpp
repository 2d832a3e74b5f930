#include "modules/binaries/UniversalBinariesController.h"

#include "appcore/ProcessorFamily.h"
#include "formats/MachOReader.h"
#include "modules/ModuleWorld.h"
#include "modules/binaries/LipoReport.h"
#include "platform/TemporaryFiles.h"

#include <gmock/gmock.h>
#include <sys/wait.h>

namespace sweeply {
namespace {

namespace fs = std::filesystem;
using namespace testing;

constexpr std::uint64_t kSlice = 8192;
constexpr const char* kState = "/Users/sam/Library/Application Support/Sweeply";

std::string fatFile(const std::vector<std::string>& names) {
    std::vector<const macho::Architecture*> list;
    for (const auto& name : names)
        list.push_back(macho::findArchitecture(name));
    return macho::universalExecutable(list, 5000);
}
std::string thinFile(const char* name, std::uint32_t size = 10) {
    return macho::executable(*macho::findArchitecture(name), size);
}

class BinariesTest : public ModuleTest {
  protected:
    BinariesTest() {
        makeApplication("One", "com.example.one");
        add();
    }
    void add(const std::string& family = "intel") {
        m_module = &m_world.add(4, std::make_unique<UniversalBinariesController>(
                                       services(), *m_world.coordinator,
                                       UniversalBinariesController::Tools{m_ignoreList.tools, m_world.alerts}, family,
                                       m_version));
    }
    void writeProgram(const std::string& path, const std::string& bytes) {
        write(path, bytes);
        setMode(path, 0755);
    }
    std::string inOne(const std::string& name) const { return "/Applications/One.app/Contents/" + name; }
    void scan() {
        findApplications();
        m_world.scan();
    }
    BinarySlimmer slimmer(std::function<void(BinarySlimmer::Step)> reached = [](BinarySlimmer::Step) {}) {
        return {m_world.files(), m_world.privileged, m_ignoreList.tools, kState, std::move(reached)};
    }
    void sweep() { m_world.gate.sweepSlimmings(); }
    std::vector<std::string> namesIn(const std::string& folder) {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(host(folder)))
            names.push_back(entry.path().filename());
        return names;
    }
    std::string listed() { return textOf(*m_module->rootNode()); }

    UniversalBinariesController* m_module = nullptr;
};

TEST_F(BinariesTest, ExecutablesForOtherProcessorsAreFoundAndNothingElse) {
    const auto both = fatFile({"ppc", "i386"});
    writeProgram(inOne("MacOS/One"), both);
    writeProgram(inOne("MacOS/four $(x) \"q\" architecture"), fatFile({"ppc", "i386", "ppc64", "x86_64"}));
    writeProgram(inOne("MacOS/intel only"), fatFile({"i386", "x86_64"}));
    writeProgram(inOne("MacOS/thin"), thinFile("ppc"));
    writeProgram(inOne("MacOS/script"), "#!/bin/sh\n");
    writeProgram(inOne("MacOS/class"), std::string("\xca\xfe\xba\xbe\0\0\0\x32", 8) + std::string(5000, 'x'));
    writeProgram(inOne("MacOS/broken"), both.substr(0, 5000));
    for (const char* name : {"MacOS/PkgInfo", "MacOS/lib.dylib", "Resources/fr.lproj/tool"})
        writeProgram(inOne(name), both);
    write(inOne("MacOS/not executable"), both);
    link(inOne("MacOS/link"), "One");
    for (int i = 0; i < 20; ++i) // more than are asked about at once, with a broken one among them
        writeProgram(inOne("Frameworks/tool" + std::to_string(i)), i == 7 ? both.substr(0, 5000) : both);
    makeApplication("Two", "com.example.two");
    scan();
    const auto& applications = m_module->rootNode()->children();
    ASSERT_EQ(applications.size(), 1U);
    std::map<std::string, std::uint64_t> sizes;
    for (const auto& executable : applications[0]->children())
        sizes[executable->path()] = executable->longSize();
    EXPECT_EQ(sizes.size(), 2U + 19U);
    EXPECT_EQ(sizes[inOne("MacOS/One")], kSlice);
    EXPECT_EQ(sizes[inOne("MacOS/four $(x) \"q\" architecture")], 2 * kSlice);
    EXPECT_EQ(m_module->getUBSize(inOne("MacOS/One")), kSlice);
    EXPECT_EQ(m_module->getUBSize(inOne("MacOS/link")) + m_module->getUBSize(""), kSlice);
}

TEST_F(BinariesTest, SlimmingKeepsTheMachinesSlicesAndTheApplicationIsPassedOverThen) {
    const auto whole = fatFile({"ppc", "i386", "x86_64"});
    writeProgram(inOne("MacOS/One"), whole);
    writeProgram(inOne("MacOS/it's \"x\" $(y)"), whole);
    scan();
    m_world.remove();
    EXPECT_EQ(listed(), "");
    for (const char* name : {"MacOS/One", "MacOS/it's \"x\" $(y)"}) {
        const auto slim = read(inOne(name));
        const auto fat = macho::readFat(slim, slim.size());
        ASSERT_TRUE(fat);
        ASSERT_EQ(fat->slices.size(), 2U);
        EXPECT_EQ(slim.substr(fat->slices[0].offset, kSlice), whole.substr(4096 + kSlice, kSlice));
        EXPECT_TRUE(m_world.exists("/Applications/One.app/.Clean"));
        EXPECT_EQ(fs::status(host(inOne(name))).permissions(), fs::perms(0755));
    }
    EXPECT_THAT(namesIn(inOne("MacOS")), testing::UnorderedElementsAre("One", "it's \"x\" $(y)"));
    EXPECT_THAT(namesIn(kState), ElementsAre("Runs"));
    writeProgram(inOne("MacOS/One"), whole);
    scan();
    EXPECT_EQ(listed(), "") << "it was slimmed before";
    drop(*m_module, {"/Applications/One.app"});
    EXPECT_THAT(listed(), HasSubstr("One " + std::to_string(kSlice)));
}

TEST_F(BinariesTest, WhatCannotBeSlimmedStaysAsItIsWithAReason) {
    const auto foreign = fatFile({"ppc", "ppc64"});
    writeProgram(inOne("MacOS/foreign"), foreign);
    writeProgram(inOne("MacOS/linked"), fatFile({"ppc", "i386"}));
    fs::create_hard_link(host(inOne("MacOS/linked")), host("/other name"));
    writeProgram(inOne("MacOS/gone"), fatFile({"ppc", "i386"}));
    scan();
    m_world.target.remove(inOne("MacOS/gone"));
    m_world.remove();
    EXPECT_EQ(read(inOne("MacOS/foreign")), foreign);
    EXPECT_EQ(read(inOne("MacOS/linked")), fatFile({"ppc", "i386"}));
    EXPECT_THAT(reasons(), UnorderedElementsAre(HasSubstr("nothing would be left"), HasSubstr("hard link")));
    EXPECT_FALSE(m_world.exists("/Applications/One.app/.Clean"));
    EXPECT_EQ(m_module->rootNode()->childAtIndex(0)->childrenCount(), 2U);
}

TEST_F(BinariesTest, ListedApplicationIsPassedOverAndAskedAboutWhenDropped) {
    writeProgram(inOne("MacOS/One"), fatFile({"ppc", "i386"}));
    ignoreList().applicationList().addBundleToList("com.example.one");
    scan();
    EXPECT_EQ(listed(), "");
    drop(*m_module, {"/Applications"});
    EXPECT_EQ(listed(), "");
    EXPECT_THAT(m_world.alerts.texts(), ElementsAre("One is in the ignore list|Are you sure you want to slim it?"));
    m_world.alerts.answers["One is in the ignore list"] = 0;
    drop(*m_module, {"/Applications/One.app"});
    EXPECT_THAT(listed(), HasSubstr("[x] One"));
}

TEST_F(BinariesTest, UnknownProcessorsMeanThatNothingIsFoundAndThatIsSaidOnce) {
    writeProgram(inOne("MacOS/One"), fatFile({"ppc", "i386"}));
    restart();
    add("unknown");
    scan();
    drop(*m_module, {"/Applications/One.app"});
    EXPECT_EQ(listed(), "");
    EXPECT_THAT(m_world.log.lines(), Contains("Error: Couldn't find arch utility"));
    EXPECT_THAT(m_world.alerts.texts(), ElementsAre(HasSubstr("Universal Binaries module error|We apologize")));
}

/// However the program ends in the middle, the executable is the old or the new one, whole, and the next start leaves
/// nothing else.
TEST_F(BinariesTest, KilledAtAnyStepTheExecutableIsWholeAndTheNextStartTakesTheCopy) {
    const auto whole = fatFile({"ppc", "i386"});
    const auto slim = thinFile("i386", 5000);
    using Step = BinarySlimmer::Step;
    write(inOne("MacOS/One.ditto"), "a stranger's");
    for (const Step last : {Step::Copied, Step::Replaced}) {
        writeProgram(inOne("MacOS/One"), whole);
        const pid_t child = ::fork();
        if (child == 0) {
            (void)slimmer([&](Step step) {
                if (step == last)
                    ::_exit(7);
            }).slimBinaryAtPath(inOne("MacOS/One"), {"i386"});
            ::_exit(0);
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_EQ(WEXITSTATUS(status), 7);
        EXPECT_EQ(read(inOne("MacOS/One")), last == Step::Copied ? whole : slim);
        EXPECT_EQ(namesIn(inOne("MacOS")).size(), last == Step::Copied ? 3U : 2U);
        sweep();
        EXPECT_THAT(namesIn(inOne("MacOS")), testing::UnorderedElementsAre("One", "One.ditto"));
        EXPECT_THAT(namesIn(kState), IsEmpty());
    }
    EXPECT_EQ(read(inOne("MacOS/One.ditto")), "a stranger's");
}

TEST_F(BinariesTest, CopyThatCannotTakeTheExecutablesPlaceGoesAndOneUnderWayStays) {
    writeProgram(inOne("MacOS/One"), fatFile({"ppc", "i386"}));
    auto slimmed = slimmer([&](BinarySlimmer::Step) {
        sweep();
        EXPECT_EQ(namesIn(inOne("MacOS")).size(), 2U) << "whoever works on it is alive";
        m_world.target.remove(inOne("MacOS/One"));
        write(inOne("MacOS/One/file"), "a folder has its place now");
    });
    EXPECT_FALSE(slimmed.slimBinaryAtPath(inOne("MacOS/One"), {"i386"}));
    EXPECT_THAT(namesIn(inOne("MacOS")), ElementsAre("One"));
    EXPECT_THAT(namesIn(kState), IsEmpty());
}

TEST_F(BinariesTest, RecordThatNamesAnythingButACopyOfOursRemovesNothing) {
    write("/Users/sam/Documents/letter", "dear");
    m_world.target.makeLink("/Users/sam/Documents/.letter.sweeply-aaaaaaaa", "letter");
    for (const char* path : {"/Users/sam/Documents/letter", "/Users/sam/Documents/.letter.sweeply-aaaaaaaa", "/", ""}) {
        write(kState + ("/" + temporaryName("Slimming")), path);
        sweep();
        EXPECT_THAT(namesIn(kState), IsEmpty());
    }
    EXPECT_THAT(namesIn("/Users/sam/Documents"), testing::UnorderedElementsAre("letter", ".letter.sweeply-aaaaaaaa"));
}

TEST_F(BinariesTest, AdministratorSlimsWhatTheUserMayNot) {
    writeProgram(inOne("MacOS/One"), fatFile({"ppc", "i386"}));
    PrivilegedExecution privileged(m_world.rights, m_ignoreList.tools, m_world.log);
    BinarySlimmer slimming(m_world.files(), privileged, m_ignoreList.tools, kState);
    const auto slimInLockedFolder = [&] {
        setMode(inOne("MacOS"), 0555);
        const bool isSlim = slimming.slimBinaryAtPath(inOne("MacOS/One"), {"i386"}).has_value();
        setMode(inOne("MacOS"), 0755);
        return isSlim;
    };
    EXPECT_FALSE(slimInLockedFolder());
    EXPECT_EQ(read(inOne("MacOS/One")), fatFile({"ppc", "i386"}));
    privileged.authorize();
    m_world.rights.beforeRun = [&] { setMode(inOne("MacOS"), 0755); };
    EXPECT_TRUE(slimInLockedFolder());
    EXPECT_EQ(read(inOne("MacOS/One")).size(), kSlice);
    EXPECT_THAT(m_world.rights.calls, SizeIs(2)) << "a copy and a move";
}

TEST(LipoReportTest, SizesAreReadAndShortSlicesAreLogged) {
    RecordingLog log;
    const std::string slice = "\n    cputype X\n    cpusubtype X\n    offset 1\n    size 70\n    align 2^12 (4096)\n";
    const auto sizes =
        foreignBytesOfFiles("Fat header in: a\nfat_magic 0xcafebabe\nnfat_arch 2\narchitecture ppc" + slice +
                                "architecture i386" + slice + "Fat header in: b\narchitecture ppc\n",
                            {"i386"}, log);
    EXPECT_EQ(sizes, (std::map<std::string, std::uint64_t>{{"a", 70}, {"b", 0}}));
    EXPECT_THAT(log.lines(), ElementsAre(HasSubstr("Failed to parse output from lipo")));
}

TEST_F(BinariesTest, ProcessorsAreThoseOfTheTarget) {
    const auto family = [&](const char* version) {
        return processorFamily(m_world.files(), *SystemVersion::fromProductVersion(version));
    };
    EXPECT_EQ(family("10.6"), "intel");
    EXPECT_EQ(family("10.5.8"), "unknown");
    write("/mach_kernel", fatFile({"ppc", "i386"}));
    EXPECT_EQ(family("10.4.11"), "unknown");
    write("/mach_kernel", thinFile("ppc7400"));
    EXPECT_EQ(family("10.4.11"), "ppc");
    write("/mach_kernel", thinFile("i386"));
    EXPECT_EQ(family("10.5"), "intel");
    EXPECT_EQ(processorFamilyOfMachine("Power Macintosh"), "ppc");
    EXPECT_EQ(processorFamilyOfMachine("aarch64"), "unknown");
}

} // namespace
} // namespace sweeply
