#pragma once

#include "platform/RecordingLog.h"
#include "platform/Volume.h"

namespace sweeply {

/// A small target volume for one test.
class TestTarget final : public TestVolume {
  public:
    void makeFile(const std::string& path, const std::string& contents) const { write(path, contents); }
    void makeLink(const std::string& path, const std::string& destination) const { link(path, destination); }
};

} // namespace sweeply
