#pragma once

#include "platform/Process.h"
#include "platform/Volume.h"

#include <map>
#include <nlohmann/json.hpp>

namespace sweeply {

/// A small Mac OS X volume, a victim beside it, and the real program to run on it.
class CliTest : public VolumeTest {
  protected:
    static constexpr const char* kCaches = "/Users/sam/Library/Caches";

    CliTest() {
        setVersion("10.6.8");
        makeFolder(kCaches);
        makeFolder("/Users/sam/Library/Logs");
        makeFolder("/Users/sam/Library/Application Support");
        makeFolder("/Users/sam/Library/Preferences");
        makeFolder("/Library/Caches");
    }

    void setVersion(const std::string& version) const {
        write(
            "/System/Library/CoreServices/SystemVersion.plist",
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\"><dict><key>ProductVersion</key><string>" +
                version + "</string></dict></plist>");
    }
    std::string cache(const std::string& name) const { return std::string(kCaches) + "/" + name; }

    /// Runs the program without a terminal, as a script would.
    ProcessResult run(const std::vector<std::string>& arguments) const {
        ProcessOptions options;
        options.errors = OutputTo::Capture;
        options.environment = {{"LC_ALL", "C.UTF-8"}, {"HOME", m_folder}, {"XDG_CONFIG_HOME", m_folder + "/config"}};
        return runProcess(SWEEPLY_CLI, arguments, options).value();
    }
    ProcessResult runOnVolume(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"--root", m_folder + "/root"});
        return run(arguments);
    }
    nlohmann::ordered_json json(const std::vector<std::string>& arguments, int expectedStatus = 0) const {
        const auto result = runOnVolume(arguments);
        EXPECT_EQ(result.exitStatus, expectedStatus) << result.errors;
        return nlohmann::ordered_json::parse(result.output);
    }

    /// The items below one of the caches' three parts, by name.
    static std::map<std::string, nlohmann::ordered_json> itemsOf(const nlohmann::ordered_json& scan, std::size_t part) {
        std::map<std::string, nlohmann::ordered_json> items;
        for (const auto& node : scan["modules"][0]["tree"]["children"][part]["children"])
            items[node["name"]] = node;
        return items;
    }

    /// Every item below the test's folder with its contents or destination, but Sweeply's own settings.
    std::map<std::string, std::string> everything() const {
        std::map<std::string, std::string> all;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(m_folder)) {
            const std::string path = entry.path().string().substr(m_folder.size());
            if (path.find("com.brindle.Sweeply") != std::string::npos ||
                path.find("/Application Support/Sweeply") != std::string::npos)
                continue;
            if (entry.is_symlink())
                all[path] = "-> " + std::filesystem::read_symlink(entry).string();
            else if (entry.is_directory())
                all[path] = "folder";
            else
                all[path] = read("/.." + path);
        }
        return all;
    }
};

} // namespace sweeply
