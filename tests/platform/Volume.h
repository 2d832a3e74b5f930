#pragma once

#include "platform/FileManager.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace sweeply {

/// A folder of the host with a target root in it and a victim beside the root that nothing may reach.
class VolumeTest : public testing::Test {
  protected:
    VolumeTest() {
        std::string name = std::filesystem::temp_directory_path() / "volume.XXXXXX";
        m_folder = ::mkdtemp(name.data());
        std::filesystem::create_directory(m_folder + "/root");
        m_files = std::move(FileManager::open(m_folder + "/root").value());
        write("/../victim", "precious");
    }
    ~VolumeTest() override {
        EXPECT_EQ(read("/../victim"), "precious");
        std::filesystem::remove_all(m_folder);
    }

    std::string host(const std::string& path) const { return m_folder + "/root" + path; }
    void makeFolder(const std::string& path) const { std::filesystem::create_directories(host(path)); }
    void write(const std::string& path, const std::string& contents) const {
        std::filesystem::create_directories(std::filesystem::path(host(path)).parent_path());
        std::ofstream(host(path), std::ios::binary) << contents;
    }
    std::string read(const std::string& path) const {
        std::ostringstream text;
        text << std::ifstream(host(path), std::ios::binary).rdbuf();
        return text.str();
    }
    void link(const std::string& path, const std::string& destination) const {
        std::filesystem::create_directories(std::filesystem::path(host(path)).parent_path());
        std::filesystem::create_symlink(destination, host(path));
    }
    bool exists(const std::string& path) const {
        return std::filesystem::exists(std::filesystem::symlink_status(host(path)));
    }

    std::string m_folder;
    std::unique_ptr<FileManager> m_files;
};

} // namespace sweeply
