#pragma once

#include "formats/PropertyList.h"
#include "platform/FileManager.h"
#include "platform/RecordingLog.h"

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

namespace sweeply {

/// A small target volume in a folder of its own, for one test.
class TestTarget final {
  public:
    TestTarget() {
        std::string name = std::filesystem::temp_directory_path() / "target.XXXXXX";
        m_root = ::mkdtemp(name.data());
        m_files = std::move(FileManager::open(m_root).value());
    }
    TestTarget(const TestTarget&) = delete;
    TestTarget& operator=(const TestTarget&) = delete;
    ~TestTarget() { std::filesystem::remove_all(m_root); }

    FileManager& files() { return *m_files; }

    void makeFolder(const std::string& path) const { std::filesystem::create_directories(m_root + path); }
    void makeFile(const std::string& path, const std::string& contents) const {
        std::filesystem::create_directories(std::filesystem::path(m_root + path).parent_path());
        std::ofstream(m_root + path, std::ios::binary) << contents;
    }
    void makeLink(const std::string& path, const std::string& destination) const {
        std::filesystem::create_directories(std::filesystem::path(m_root + path).parent_path());
        std::filesystem::create_symlink(destination, m_root + path);
    }
    void remove(const std::string& path) const { std::filesystem::remove_all(m_root + path); }
    /// A bundle at `path` whose Info.plist holds `info`.
    void makeBundle(const std::string& path, std::vector<plist::Dictionary::Member> info) const {
        makeFile(path + "/Contents/Info.plist", plist::writeXml(plist::Dictionary(std::move(info))));
    }

  private:
    std::string m_root;
    std::unique_ptr<FileManager> m_files;
};

} // namespace sweeply
