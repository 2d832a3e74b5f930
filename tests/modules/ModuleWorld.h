#pragma once

#include "appcore/bundles/SharedSurveys.h"
#include "appcore/sizes/DiskSizes.h"
#include "modules/IgnoreListWorld.h"
#include "modules/ModuleServices.h"

#include <gtest/gtest.h>

namespace sweeply {

/// A volume with applications, and what one module needs to work on it as it does in the program.
class ModuleTest : public testing::Test {
  protected:
    using Paths = std::vector<std::string>;

    explicit ModuleTest(const char* version = "10.6.8")
        : m_version(SystemVersion::fromProductVersion(version).value()), m_world(version, SWEEPLY_LIBEXEC) {
        restart();
    }
    ~ModuleTest() override { m_world.end(); }

    /// Another run of the program on the same volume; modules are to be added anew.
    void restart() {
        m_world.restart([this](UserDefaults& defaults) {
            auto list = std::make_unique<IgnoreListController>(m_ignoreList.services(defaults));
            list->load();
            return list;
        });
        m_subscription = m_world.notifications->observe<ProblemFound>([this](const ProblemFound& problem) {
            const std::lock_guard lock(m_world.treeLock);
            m_problems.push_back(problem.error.message());
        });
    }
    IgnoreListController& ignoreList() { return static_cast<IgnoreListController&>(*m_world.ownList); }
    ModuleServices services() {
        return {m_world.services(), m_world.files(),           m_sizes,  m_world.folders,
                *m_world.ownList,   m_ignoreList.applications, m_surveys};
    }
    /// Has the inventory look at the applications there are now.
    void findApplications() {
        m_ignoreList.applications.createApplicationsArray(std::stop_token(), std::chrono::milliseconds(0));
    }
    void drop(ADScanController& module, const std::vector<std::string>& paths) {
        module.receiveDragData(paths);
        m_world.waitUntil([&] { return !module.ifScanRunning(); });
    }
    void write(const std::string& path, const std::string& contents = "x") { m_world.target.write(path, contents); }
    void writeAll(const Paths& paths) {
        for (const auto& path : paths)
            write(path);
    }
    void link(const std::string& path, const std::string& to) { m_world.target.link(path, to); }
    void setMode(const std::string& path, mode_t mode) { m_world.target.setMode(path, mode); }
    /// Those of the paths at which something stands.
    Paths there(Paths paths) {
        std::erase_if(paths, [this](const std::string& path) { return !m_world.exists(path); });
        return paths;
    }
    std::string read(const std::string& path) {
        return m_world.files().contentsAtPath(path, std::size_t{64} << 20U).value_or("nothing at " + path);
    }
    std::string host(const std::string& path) { return m_world.files().rootPath() + path; }
    void makeApplication(const std::string& name, const std::string& identifier) {
        m_world.target.makeBundle("/Applications/" + name + ".app", {{"CFBundleIdentifier", identifier}});
    }
    static Paths pathsOf(const std::vector<Node::Pointer>& nodes) {
        Paths paths;
        for (const auto& node : nodes)
            paths.push_back(node->path());
        return paths;
    }
    static Paths namesOf(const Node& parent) {
        Paths names;
        for (const auto& child : parent.children())
            names.emplace_back(child->name());
        return names;
    }
    /// Why the removal left things.
    Paths reasons() const {
        Paths texts;
        for (const auto& report : m_world.gate.reports()) {
            if (!report.outcome.isDone())
                texts.push_back(report.outcome.error.message());
        }
        return texts;
    }
    /// The tree as lines: name, size and mark, each level indented.
    static std::string textOf(const Node& node, int level = 0) {
        std::string text;
        for (const auto& child : node.children()) {
            text += std::string(static_cast<std::size_t>(level) * 2, ' ') + (child->ifEnabled() ? "[x] " : "[ ] ") +
                    std::string(child->name()) + " " + std::to_string(child->longSize()) + "\n";
            text += textOf(*child, level + 1);
        }
        return text;
    }

    SystemVersion m_version;
    TestWorld m_world;
    DiskSizes m_sizes{m_world.files(), m_version};
    SharedSurveys m_surveys{m_world.files(), m_sizes};
    IgnoreListWorld m_ignoreList{m_world};
    NotificationCenter::Subscription m_subscription;
    std::vector<std::string> m_problems; ///< guarded by the tree lock
};

} // namespace sweeply
