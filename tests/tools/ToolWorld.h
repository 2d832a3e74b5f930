#pragma once

#include "platform/Process.h"
#include "platform/TestFolder.h"

#include <sstream>

namespace sweeply {

/// A folder of its own in which a test runs our tools as other programs do.
class ToolWorld {
  public:
    ProcessResult run(const std::string& tool, const std::vector<std::string>& arguments) const {
        return runProgram(SWEEPLY_LIBEXEC "/" + tool, arguments);
    }
    ProcessResult runProgram(const std::string& program, const std::vector<std::string>& arguments) const {
        ProcessOptions options;
        options.workingDirectory = folder.fd();
        options.errors = OutputTo::Capture;
        return runProcess(program, arguments, options).value();
    }
    void write(const std::string& name, const std::string& contents) const {
        folder.makeFile(name);
        std::ofstream(folder.path(name), std::ios::binary) << contents;
    }
    std::string read(const std::string& name) const {
        std::ostringstream text;
        text << std::ifstream(folder.path(name), std::ios::binary).rdbuf();
        return text.str();
    }

    TestFolder folder;
};

} // namespace sweeply
