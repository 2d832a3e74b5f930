#include "cli/sample/SampleVolume.h"

#include "formats/PropertyList.h"
#include "platform/FileManager.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <sys/stat.h>

namespace sweeply {

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

/// A folder for one test, and what is in it.
class SampleVolume : public testing::Test {
  protected:
    SampleVolume() {
        std::string name = (fs::temp_directory_path() / "sample-XXXXXX").string();
        m_folder = ::mkdtemp(name.data());
    }
    ~SampleVolume() override { fs::remove_all(m_folder); }

    [[nodiscard]] fs::path at(const std::string& path) const { return m_folder / path; }

    /// Every item below `folder`: its contents, a link's destination or "folder".
    [[nodiscard]] static std::map<std::string, std::string> everythingIn(const fs::path& folder) {
        std::map<std::string, std::string> all;
        for (const auto& item : fs::recursive_directory_iterator(folder)) {
            std::string& value = all[item.path().lexically_relative(folder).string()];
            if (item.is_symlink())
                value = "link to " + fs::read_symlink(item.path()).string();
            else
                value = item.is_directory() ? "folder" : contents(item.path());
        }
        return all;
    }

    static std::string contents(const fs::path& file) {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

  private:
    fs::path m_folder;
};

} // namespace

TEST_F(SampleVolume, WrittenTwiceUnderDifferentMasksIsTheSame) {
    const mode_t mask = ::umask(022);
    const auto first = writeSampleVolume(at("first"), 1);
    ::umask(077);
    const auto second = writeSampleVolume(at("second"), 1);
    ::umask(mask);
    ASSERT_TRUE(first) << first.error().message();
    ASSERT_TRUE(second) << second.error().message();
    EXPECT_EQ(first->bytes, second->bytes);
    const auto all = everythingIn(at("first"));
    EXPECT_EQ(first->files + first->folders, all.size());
    for (const auto& [path, value] : everythingIn(at("second"))) {
        const auto other = all.find(path);
        EXPECT_TRUE(other != all.end() && other->second == value) << path << " differs";
    }
}

TEST_F(SampleVolume, LooksLikeASystemWithOneUserFromInside) {
    ASSERT_TRUE(writeSampleVolume(at("new/deep/volume"), 1));
    const auto files = FileManager::open(at("new/deep/volume").string());
    ASSERT_TRUE(files);
    const auto version = (*files)->contentsAtPath("/System/Library/CoreServices/SystemVersion.plist", 10'000);
    ASSERT_TRUE(version);
    EXPECT_EQ(*plist::parse(*version)->findString("ProductVersion"), "10.6.8");
    EXPECT_TRUE((*files)->fileExistsAtPath("/var/db/receipts/com.harborline.mail.pkg.bom"));
    EXPECT_TRUE((*files)->fileExistsAtPath("/Users/sam/Library/Caches/link to documents/Taxes 2010.pdf"));
    EXPECT_TRUE((*files)->fileExistsAtPath("/Volumes/Macintosh HD/Applications"));
    EXPECT_FALSE(fs::exists(at("new/deep/volume/Users/Shared/Library")));
}

TEST_F(SampleVolume, ScaleMultipliesCachesLogsAndApplications) {
    ASSERT_TRUE(writeSampleVolume(at("two"), 2));
    for (const char* path : {"Applications/Ledger 2.app/Contents/MacOS/Ledger", "Library/Caches/com.apple.ATS 2",
                             "Users/sam/Library/Logs/Paper Trail session 20.log"})
        EXPECT_TRUE(fs::exists(at("two") / path)) << path;
    EXPECT_THAT(contents(at("two/Applications/Ledger 2.app/Contents/Info.plist")), HasSubstr("com.northbay.ledger2"));
}

TEST_F(SampleVolume, FolderThatHoldsSomethingIsRefusedAndLeftAsItIs) {
    fs::create_directory(at("mine"));
    std::ofstream(at("mine/.hidden")) << "kept";
    for (const char* name : {"mine", "mine/.hidden", "mine/.hidden/below"}) {
        const auto written = writeSampleVolume(at(name), 1);
        ASSERT_FALSE(written) << name;
        EXPECT_THAT(written.error().message(), HasSubstr(at("mine").string()));
    }
    EXPECT_EQ(everythingIn(at("")), (std::map<std::string, std::string>{{"mine", "folder"}, {"mine/.hidden", "kept"}}));
}

TEST_F(SampleVolume, NothingLandsOutsideAFolderWithAnAwkwardNameReachedThroughALink) {
    const std::string name = "$(touch x) \"a\"\n*\xff";
    fs::create_directory(at(name));
    fs::create_directory_symlink(name, at("link"));
    const auto written = writeSampleVolume(at("link"), 1);
    ASSERT_TRUE(written) << written.error().message();
    EXPECT_TRUE(fs::exists(at(name) / "mach_kernel"));
    fs::create_directory_symlink(at("nowhere/x"), at("dangling"));
    EXPECT_FALSE(writeSampleVolume(at("dangling"), 1));
    EXPECT_EQ(std::distance(fs::directory_iterator(at("")), {}), 3);
}

TEST_F(SampleVolume, FailureNamesTheFirstFileThatCouldNotBeWritten) {
    fs::create_directory(at("closed"));
    fs::permissions(at("closed"), fs::perms::owner_read | fs::perms::owner_exec);
    const auto written = writeSampleVolume(at("closed"), 1);
    fs::permissions(at("closed"), fs::perms::owner_all);
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error().kind, ErrorKind::PermissionDenied);
    EXPECT_EQ(written.error().path, at("closed/Library").string());
    EXPECT_FALSE(writeSampleVolume(at("closed"), 0));
}

} // namespace sweeply
