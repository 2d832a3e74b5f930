#include "platform/ToolTable.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

namespace sweeply {
namespace {

namespace fs = std::filesystem;

class ToolTableTest : public testing::Test {
  protected:
    void SetUp() override {
        std::string name = fs::temp_directory_path() / "tools.XXXXXX";
        ASSERT_NE(::mkdtemp(name.data()), nullptr);
        m_folder = name;
    }
    void TearDown() override { fs::remove_all(m_folder); }

    void addEquivalent(const std::string& name, fs::perms permissions) {
        const std::string path = m_folder + "/" + name;
        std::ofstream(path) << "#!/bin/sh\n";
        fs::permissions(path, permissions);
    }

    std::string m_folder;
};

TEST_F(ToolTableTest, OurEquivalentComesBeforeTheHostsOwn) {
    addEquivalent("rm", fs::perms::owner_all);
    const ToolTable tools(m_folder, ToolTable::Host::Other);

    EXPECT_EQ(tools.programFor("/bin/rm"), m_folder + "/rm");
    EXPECT_EQ(tools.programFor("/bin/ls"), "/bin/ls");
}

TEST_F(ToolTableTest, AMacRunsItsOwnTools) {
    addEquivalent("rm", fs::perms::owner_all);
    addEquivalent("lipo-that-a-mac-lacks", fs::perms::owner_all);
    const ToolTable tools(m_folder, ToolTable::Host::Mac);

    EXPECT_EQ(tools.programFor("/bin/rm"), "/bin/rm");
    EXPECT_EQ(tools.programFor("/usr/bin/lipo-that-a-mac-lacks"), m_folder + "/lipo-that-a-mac-lacks");
}

TEST_F(ToolTableTest, AToolThatTheHostKeepsElsewhereIsFoundByName) {
    const ToolTable tools(m_folder, ToolTable::Host::Other);

    EXPECT_EQ(tools.programFor("/System/Library/Support/env"), "/usr/bin/env");
}

TEST_F(ToolTableTest, WhatCannotRunIsNoEquivalent) {
    addEquivalent("ls", fs::perms::owner_read);
    fs::create_directory(m_folder + "/env");
    const ToolTable tools(m_folder, ToolTable::Host::Other);

    EXPECT_EQ(tools.programFor("/bin/ls"), "/bin/ls");
    EXPECT_EQ(tools.programFor("/usr/bin/env"), "/usr/bin/env");
}

TEST_F(ToolTableTest, AMissingToolIsUnavailableByName) {
    const ToolTable tools(m_folder, ToolTable::Host::Other);

    for (const std::string tool : {"/usr/bin/sweeply-no-such-tool", "", "/usr/bin/", "/usr/bin/.."}) {
        const auto program = tools.programFor(tool);
        ASSERT_FALSE(program) << tool;
        EXPECT_EQ(program.error().kind, ErrorKind::Unavailable);
        EXPECT_EQ(program.error().path, tool);
    }
}

} // namespace
} // namespace sweeply
