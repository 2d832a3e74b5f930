#include "platform/ToolTable.h"

#include "platform/TestFolder.h"

#include <gtest/gtest.h>

namespace sweeply {
namespace {

TEST(ToolTableTest, ToolsAreOursOrTheHostsOwn) {
    const TestFolder folder;
    for (const char* name : {"rm", "ours-alone", "ls"})
        folder.makeFile(name);
    folder.setMode("rm", 0700);
    folder.setMode("ours-alone", 0700);
    folder.makeFolder("env");
    const struct {
        ToolTable::Host host;
        const char* tool;
        std::string program;
    } rows[]{
        {ToolTable::Host::Other, "/bin/rm", folder.path("rm")},
        {ToolTable::Host::Other, "/bin/ls", "/bin/ls"}, // ours cannot be run
        {ToolTable::Host::Other, "/usr/bin/env", "/usr/bin/env"},
        {ToolTable::Host::Other, "/bin/cat", "/bin/cat"},
        {ToolTable::Host::Other, "/System/Library/Support/cat", "/usr/bin/cat"},
        {ToolTable::Host::Mac, "/bin/rm", "/bin/rm"},
        {ToolTable::Host::Mac, "/usr/bin/ours-alone", folder.path("ours-alone")},
    };
    for (const auto& row : rows)
        EXPECT_EQ(ToolTable(folder.path(), row.host).programFor(row.tool), row.program) << row.tool;
    for (const std::string tool : {"/usr/bin/sweeply-no-such-tool", "", "/usr/bin/", "/usr/bin/.."}) {
        const auto program = ToolTable(folder.path(), ToolTable::Host::Other).programFor(tool);
        ASSERT_FALSE(program) << tool;
        EXPECT_EQ(program.error().kind, ErrorKind::Unavailable);
        EXPECT_EQ(program.error().path, tool);
    }
}

} // namespace
} // namespace sweeply
