#include "tools/ToolWorld.h"

#include <gmock/gmock.h>

namespace sweeply {
namespace {

using testing::HasSubstr;

class RmTest : public testing::Test, protected ToolWorld {
  protected:
    RmTest() { write("victim", "precious"); }
    ~RmTest() override { EXPECT_EQ(read("victim"), "precious"); }
};

TEST_F(RmTest, FilesFoldersAndLinksGoAndNothingElse) {
    for (const char* options : {"-rf", "-rfP"}) {
        write("tree/a/file", "contents");
        write("tree/a/empty", "");
        write("tree/read only", "contents");
        setMode("tree/read only", 0400);
        makeLink("tree/link", "../victim");
        makeLink("tree/a/up", "..");
        EXPECT_EQ(run("rm", {options, "./tree"}).errors, "");
        EXPECT_FALSE(contains("tree")) << options;
        EXPECT_EQ(run("rm", {options, "absent", "also/absent"}).exitStatus, 0);
        for (const char* refused : {"/", ".", "..", "tree/..", ""})
            EXPECT_EQ(run("rm", {options, refused}).exitStatus, 1) << refused;
    }
    write("file", "x");
    EXPECT_EQ(run("rm", {"-P", "absent"}).exitStatus, 1);
    makeFolder("folder");
    EXPECT_THAT(run("rm", {"-fP", "folder"}).errors, HasSubstr("is a folder"));
    EXPECT_EQ(run("rm", {"-i", "file"}).exitStatus, 1);
    EXPECT_TRUE(contains("file"));
    EXPECT_EQ(run("rm", {"-P", "--", "file"}).exitStatus, 0);
    EXPECT_FALSE(contains("file"));
}

TEST_F(RmTest, ContentsAreOverwrittenWhereTheyLie) {
    constexpr std::size_t kSize = 300'001;
    write("secret", std::string(kSize, 's'));
    // Who holds the file open sees its own blocks after the name is gone.
    const UniqueFd held(::open(path("secret").c_str(), O_RDONLY | O_CLOEXEC));
    ASSERT_EQ(run("rm", {"-rfP", "secret"}).exitStatus, 0);
    EXPECT_FALSE(contains("secret"));
    std::string left(kSize + 1, '\0');
    EXPECT_EQ(::pread(held.get(), left.data(), left.size(), 0), static_cast<ssize_t>(kSize)) << "it was truncated";
    EXPECT_EQ(left.substr(0, kSize), std::string(kSize, '\xff'));
}

TEST_F(RmTest, FileWithAnotherNameStaysAndIsNotOverwritten) {
    write("tree/file", "contents");
    ASSERT_EQ(::link(path("tree/file").c_str(), path("other").c_str()), 0);
    const auto said = run("rm", {"-rfP", "tree"});
    EXPECT_EQ(said.exitStatus, 1);
    EXPECT_THAT(said.errors, HasSubstr("tree/file: has another name elsewhere"));
    EXPECT_EQ(read("other"), "contents");
    EXPECT_EQ(read("tree/file"), "contents");
    EXPECT_EQ(run("rm", {"-rf", "tree"}).exitStatus, 0);
    EXPECT_EQ(read("other"), "contents");
}

} // namespace
} // namespace sweeply
