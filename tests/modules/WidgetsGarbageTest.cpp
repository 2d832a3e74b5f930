#include "modules/extensions/WidgetsGarbage.h"

#include "modules/UninstallWorld.h"

#include <gmock/gmock.h>

namespace sweeply {
namespace {

using namespace testing;

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
    const Paths gone{preference("widget-org.c.plist"), preference("my widget-org.e.plist"),
                     preference("widget-x.plist")};
    const Paths kept{preference("widget-com.apple.widget.a.plist"),
                     preference("widget-org.b.sub.plist"),
                     preference("org.c.plist"),
                     preference("widget-org.c"),
                     preference("Widget-org.c.plist"),
                     preference("ByHost/widget-org.c.plist")};
    writeAll(gone);
    writeAll(kept);
    m_world.target.makeFolder(preference("widget-folder.plist"));
    m_world.scan();
    const auto& root = *m_module->rootNode();
    ASSERT_EQ(root.childrenCount(), 1U) << "no category without content";
    EXPECT_THAT(namesOf(*root.childAtIndex(0)), UnorderedElementsAre("c", "e", "widget-x"));
    EXPECT_EQ(root.longSize(), 12000U);
    EXPECT_THAT(m_problems, Contains(HasSubstr("E.wdgt/Info.plist: ")));
    m_world.remove();
    EXPECT_THAT(there(gone), IsEmpty());
    EXPECT_EQ(there(kept), kept);
    EXPECT_EQ(scan(), "");
}

TEST_F(WidgetsGarbageTest, WhatStartsProgramsThatAreGoneGoes) {
    const std::string agents = "/Users/sam/Library/LaunchAgents/";
    const std::string daemons = "/Library/LaunchDaemons/";
    writeAll({"/there/program", "/usr/bin/tool", "/own/bin/own tool"});
    link("/there/link", "/there/program");
    link("/there/dangling", "/nowhere");
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
    EXPECT_THAT(listed, UnorderedElementsAre("gone.app", "x.app unchecked", "gone.plist", "dangling.plist",
                                             "gone too.plist", "bare.plist", "away.plist unchecked"));
    EXPECT_THAT(m_problems, Contains(HasSubstr("damaged.plist: ")));
    EXPECT_THAT(m_problems, Contains(HasSubstr("nothing.plist: names no program")));
    m_world.remove();
    EXPECT_THAT(
        there({agents + "gone.plist", agents + "dangling.plist", daemons + "gone too.plist", daemons + "bare.plist"}),
        IsEmpty());
    const Paths kept{agents + "away.plist", daemons + "there.plist",   daemons + "tool.plist",
                     daemons + "own.plist", daemons + "nothing.plist", daemons + "damaged.plist",
                     "/there/program"};
    EXPECT_EQ(there(kept), kept);
    EXPECT_EQ(m_loginItems.loginItemsList().size(), 3U) << "only that of the program that is gone was taken out";
}

} // namespace
} // namespace sweeply
