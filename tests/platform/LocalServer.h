#pragma once

#include "platform/BackgroundProgram.h"
#include "platform/TestFolder.h"

namespace sweeply {

/// A real server of this machine, as server.py beside this file describes it, over a folder of its own.
class LocalServer final {
  public:
    /// With `certificate`, a file with a key and a certificate, it speaks TLS.
    explicit LocalServer(const std::string& certificate = {}) : m_certificate(certificate) {}

    [[nodiscard]] std::string url(const std::string& path) const {
        return (m_certificate.empty() ? "http" : "https") + ("://127.0.0.1:" + m_program.firstLine()) + path;
    }
    void serve(const std::string& name, const std::string& contents) const { folder.write(name, contents); }
    /// What it was asked, a JSON object a line.
    [[nodiscard]] std::string requests() const { return folder.read("requests"); }

    const TestFolder folder;

  private:
    [[nodiscard]] std::vector<std::string> words() const {
        // Whatever stands between this machine and the network is not meant for the machine itself.
        ::setenv("no_proxy", "127.0.0.1,localhost", 1);
        std::vector<std::string> words{"/usr/bin/python3", SWEEPLY_TEST_SERVER, folder.path()};
        if (!m_certificate.empty())
            words.push_back(m_certificate);
        return words;
    }

    const std::string m_certificate;
    const BackgroundProgram m_program{words()};
};

} // namespace sweeply
