#include "modules/extensions/WidgetsGarbage.h"

#include "modules/UninstallWorld.h"

#include <gmock/gmock.h>

namespace sweeply {
namespace {

using testing::Contains;
using testing::HasSubstr;

class WidgetsGarbageTest : public UninstallWorldTest {
  protected:
    WidgetsGarbageTest() {
        m_module = &m_world.add(
            6, std::make_unique<WidgetsGarbage>(services(), *m_world.coordinator,
                                                WidgetsGarbage::Parts{m_loginItems, m_launchItems, m_steps}));
    }
    ~WidgetsGarbageTest() override { m_world.end(); }

    std::string scan() {
        m_world.scan();
        return textOf(*m_module->rootNode());
    }
    static std::string preference(const std::string& name) { return "/Users/sam/Library/Preferences/" + name; }

    WidgetsGarbage* m_module = nullptr;
};

TEST_F(WidgetsGarbageTest, PreferencesOfWidgetsThatAreGoneGo) {
    writeList("/Library/Widgets/A.wdgt/Info.plist", {{"CFBundleIdentifier", "com.apple.widget.a"}});
    writeList("/Users/sam/Library/Widgets/B.wdgt/Info.plist", {{"CFBundleIdentifier", "org.b"}});
    writeList("/Users/sam/Library/Widgets/C.wdgt/en.lproj/Info.plist", {{"CFBundleIdentifier", "org.c"}});
    writeList("/Users/sam/Library/Widgets/D.wdgt/Info.plist", {{"CFBundleIdentifier", ""}});
    write("/Users/sam/Library/Widgets/E.wdgt/Info.plist", "<plist>");
    const std::vector<std::string> gone{"widget-org.c.plist", "my widget-org.e.plist", "widget-x.plist"};
    const std::vector<std::string> kept{"widget-com.apple.widget.a.plist",
                                        "widget-org.b.sub.plist",
                                        "org.c.plist",
                                        "widget-org.c",
                                        "Widget-org.c.plist",
                                        "ByHost/widget-org.c.plist"};
    for (const auto& name : gone)
        write(preference(name));
    for (const auto& name : kept)
        write(preference(name));
    m_world.target.makeFolder(preference("widget-folder.plist"));
    m_world.scan();
    const auto& root = *m_module->rootNode();
    ASSERT_EQ(root.childrenCount(), 1U) << "no category without content";
    std::vector<std::string> names;
    for (const auto& node : root.childAtIndex(0)->children())
        names.emplace_back(node->name());
    EXPECT_THAT(names, testing::UnorderedElementsAre("c", "e", "widget-x"));
    EXPECT_EQ(root.longSize(), 12000U);
    EXPECT_THAT(m_problems, Contains(HasSubstr("E.wdgt/Info.plist: ")));
    m_world.remove();
    for (const auto& name : gone)
        EXPECT_FALSE(m_world.exists(preference(name))) << name;
    for (const auto& name : kept)
        EXPECT_TRUE(m_world.exists(preference(name))) << name;
    EXPECT_EQ(scan(), "");
}

TEST_F(WidgetsGarbageTest, WhatStartsProgramsThatAreGoneGoes) {
    const std::string agents = "/Users/sam/Library/LaunchAgents/";
    const std::string daemons = "/Library/LaunchDaemons/";
    write("/there/program");
    m_world.target.makeLink("/there/link", "/there/program");
    m_world.target.makeLink("/there/dangling", "/nowhere");
    write("/usr/bin/tool");
    write("/own/bin/own tool");
    const auto arguments = [](const char* program) { return plist::Array{program, "/there/program"}; };
    writeList(agents + "gone.plist", {{"Program", "/gone"}, {"ProgramArguments", arguments("/there/program")}});
    writeList(agents + "dangling.plist", {{"Program", "/there/dangling"}});
    writeList(daemons + "gone too.plist", {{"ProgramArguments", arguments("/gone")}});
    writeList(daemons + "bare.plist", {{"ProgramArguments", arguments("no such tool")}});
    writeList(agents + "away.plist", {{"Program", "/Volumes/Stick/program"}});
    writeList(daemons + "there.plist", {{"ProgramArguments", arguments("/there/link")}});
    writeList(daemons + "tool.plist", {{"ProgramArguments", arguments("tool")}});
    writeList(
        daemons + "own.plist",
        {{"ProgramArguments", arguments("own tool")},
         {"EnvironmentVariables", plist::Dictionary(std::vector<plist::Dictionary::Member>{{"PATH", "/own/bin"}})}});
    writeList(daemons + "nothing.plist", {{"ProgramArguments", plist::Array{}}});
    write(daemons + "damaged.plist", "bplist00");
    write(daemons + "inner/deep.plist", "bplist00");
    m_loginItems.writeLoginItemsList(
        {loginItem("/gone.app"), loginItem("/there"), "no dictionary", loginItem("/Volumes/Stick/x.app")});
    m_world.scan();
    std::vector<std::string> listed;
    for (const auto& node : m_module->rootNode()->childAtIndex(0)->children())
        listed.push_back(std::string(node->name()) + (node->ifEnabled() ? "" : " unchecked"));
    EXPECT_THAT(listed, testing::UnorderedElementsAre("gone.app", "x.app unchecked", "gone.plist", "dangling.plist",
                                                      "gone too.plist", "bare.plist", "away.plist unchecked"));
    EXPECT_THAT(m_problems, Contains(HasSubstr("damaged.plist: ")));
    EXPECT_THAT(m_problems, Contains(HasSubstr("nothing.plist: names no program")));
    m_world.remove();
    for (const auto& name :
         {agents + "gone.plist", agents + "dangling.plist", daemons + "gone too.plist", daemons + "bare.plist"})
        EXPECT_FALSE(m_world.exists(name)) << name;
    for (const auto& name : {agents + "away.plist", daemons + "there.plist", daemons + "tool.plist",
                             daemons + "own.plist", daemons + "nothing.plist", daemons + "damaged.plist"})
        EXPECT_TRUE(m_world.exists(name)) << name;
    EXPECT_EQ(m_loginItems.loginItemsList().size(), 3U) << "only that of the program that is gone was taken out";
    EXPECT_TRUE(m_world.exists("/there/program"));
}

} // namespace
} // namespace sweeply
