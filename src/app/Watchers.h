#pragma once

namespace sweeply {

/// The watchers in the background that start the program: one when an application is trashed, one when a volume is
/// mounted. Without the uninstaller there are none.
class Watchers {
  public:
    virtual ~Watchers() = default;

    /// Does the installed trash watcher need to be brought up to date?
    [[nodiscard]] virtual bool shouldUpdateTrashWatcher() const { return false; }
    // Both block, and are called on threads of their own.
    virtual void installTrashWatcher() {}
    virtual void installVolumeWatcher() {}
};

} // namespace sweeply
