#pragma once

#include "platform/VolumeBoundary.h"

#include <functional>
#include <string>

namespace rm {

/// Overwrites files where they lie on the disk and removes them then. What could not be overwritten stays.
class Eraser final {
  public:
    using Complaint = std::function<void(const std::string& path, const std::string& reason)>;

    /// Stays on the volume of the open folder `parent`, which is not kept.
    Eraser(int parent, Complaint complain) : m_volume(parent), m_complain(std::move(complain)) {}

    /// Erases the item `name` of the open folder `parent`, and all below it. Links go as links. True when it is gone.
    bool erase(int parent, const std::string& name, const std::string& path);

  private:
    bool eraseFolder(int parent, const std::string& name, const std::string& path);
    bool overwrite(int parent, const std::string& name, const std::string& path);
    bool failed(const std::string& path);

    const sweeply::VolumeBoundary m_volume;
    const Complaint m_complain;
};

} // namespace rm
