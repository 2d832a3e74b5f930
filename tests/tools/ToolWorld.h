#pragma once

#include "platform/Process.h"
#include "platform/TestFolder.h"

namespace sweeply {

/// A folder of its own in which a test runs our tools as other programs do.
class ToolWorld : public TestFolder {
  public:
    ProcessResult run(const std::string& tool, const std::vector<std::string>& arguments) const {
        return runProgram(SWEEPLY_LIBEXEC "/" + tool, arguments);
    }
    ProcessResult runProgram(const std::string& program, const std::vector<std::string>& arguments) const {
        ProcessOptions options;
        options.workingDirectory = fd();
        options.errors = OutputTo::Capture;
        return runProcess(program, arguments, options).value();
    }
};

} // namespace sweeply
