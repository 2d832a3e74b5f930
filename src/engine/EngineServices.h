#pragma once

#include "appcore/sizes/SizeDisplay.h"

#include <mutex>

namespace sweeply {

class MainThread;
class NotificationCenter;
class ReadProblems;
class SystemLog;
class UserDefaults;
struct Pace;

/// Guards every result tree that more than one thread can see. Recursive, since operations on a tree are built on each
/// other.
using TreeLock = std::recursive_mutex;

/// What every scan module works with. The composition root owns all of it and keeps it longer than any module.
struct EngineServices {
    UserDefaults& defaults;
    NotificationCenter& notifications;
    MainThread& mainThread;
    SystemLog& log;
    TreeLock& treeLock;
    const Pace& pace;
    SizeUnits units;
    ReadProblems& problems; ///< of the target
};

} // namespace sweeply
