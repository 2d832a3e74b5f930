#pragma once

#include "engine/ActionButtons.h"

#include <cstdint>

namespace sweeply {

/// What shows the coordinator's state: the main window, or nothing. Main thread.
class MainView {
  public:
    virtual ~MainView() = default;

    virtual void reloadModuleList() {}
    virtual void actionButtonsChanged(const ActionButtons&) {}
    virtual void changeViewTo(std::uint8_t) {}
    /// The run that kept a wanted quit waiting is over.
    virtual void terminate() {}
};

} // namespace sweeply
