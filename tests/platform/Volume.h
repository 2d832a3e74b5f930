#pragma once

#include "formats/PropertyList.h"
#include "platform/FileManager.h"
#include "platform/SystemCalls.h"
#include "platform/TestFolder.h"

#include <gtest/gtest.h>

namespace sweeply {

/// A target root, the folder "root" in a folder of the host, and the same vocabulary for paths of that target.
class TestVolume {
  public:
    /// `calls` outlives it.
    explicit TestVolume(SystemCalls& calls = SystemCalls::plain()) {
        makeFolder("");
        m_files = std::move(FileManager::open(host(""), calls).value());
    }

    [[nodiscard]] FileManager& files() const { return *m_files; }
    [[nodiscard]] std::string host(const std::string& path) const { return m_folder + "/root" + path; }
    [[nodiscard]] std::string read(const std::string& path) const { return m_top.read("root" + path); }
    [[nodiscard]] bool exists(const std::string& path) const { return m_top.contains("root" + path); }
    [[nodiscard]] std::vector<std::string> names(const std::string& path) const { return m_top.names("root" + path); }

    void makeFolder(const std::string& path) const { m_top.makeFolder("root" + path); }
    void write(const std::string& path, const std::string& contents = "x") const {
        m_top.write("root" + path, contents);
    }
    void link(const std::string& path, const std::string& to) const { m_top.makeLink("root" + path, to); }
    void remove(const std::string& path) const { m_top.remove("root" + path); }
    void setMode(const std::string& path, mode_t mode) const { m_top.setMode("root" + path, mode); }
    /// A bundle whose Info.plist holds `info`.
    void makeBundle(const std::string& path, std::vector<plist::Dictionary::Member> info) const {
        write(path + "/Contents/Info.plist", plist::writeXml(plist::Dictionary(std::move(info))));
    }

  private:
    const TestFolder m_top;

  protected:
    const std::string m_folder = m_top.path();

  private:
    std::unique_ptr<FileManager> m_files;
};

/// A test on such a volume, with a victim beside the root that nothing may reach.
class VolumeTest : public testing::Test, protected TestVolume {
  protected:
    VolumeTest() { write("/../victim", "precious"); }
    ~VolumeTest() override { EXPECT_EQ(read("/../victim"), "precious"); }
};

} // namespace sweeply
