#pragma once

#include "platform/RecordingLog.h"
#include "platform/TrickyCalls.h"
#include "platform/Volume.h"

namespace sweeply {

/// By which a target is changed; made before what uses it.
struct TargetCalls {
    TrickyCalls calls;
};

/// A small target volume for one test.
class TestTarget final : public TargetCalls, public TestVolume {
  public:
    TestTarget() : TestVolume(calls) {}

    [[nodiscard]] std::string root() const { return host(""); }
    void makeFile(const std::string& path, const std::string& contents) const { write(path, contents); }
    void makeLink(const std::string& path, const std::string& destination) const { link(path, destination); }
};

} // namespace sweeply
