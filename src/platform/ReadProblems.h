#pragma once

#include "platform/Error.h"

#include <functional>
#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace sweeply {

/// What of a target should have been read and could not be: each path once, with the first reason.
///
/// The target's FileManager and the walks that it gives out add what they meet by themselves, so that nobody who looks
/// for something can take an unreadable folder for an empty one. Who reads in another way, with a tool for instance,
/// adds it. Thread-safe.
class ReadProblems final {
  public:
    /// Called with each problem, on the thread that met it. Set before the first walk.
    void setListener(std::function<void(const Error&)> listener) { m_listener = std::move(listener); }

    /// Keeps the problem and tells it, unless it is known. What is missing or makes no sense is told and not kept: it is
    /// not unread.
    void add(const Error& error);
    /// The same for a question of the file system. That nothing, or something of another kind, stands at a path is an
    /// answer and no problem.
    void addFailure(const Error& error);
    /// Forgets what was met so far: a scan begins.
    void startOver();
    /// While something is removed, what cannot be read is what could not be removed, and told as such: nothing is kept
    /// then, and only what is added on purpose is told.
    void setRemoving(bool isRemoving);

    /// In the order in which they were met.
    [[nodiscard]] std::vector<Error> all() const;
    [[nodiscard]] bool isEmpty() const;

  private:
    std::function<void(const Error&)> m_listener;
    mutable std::mutex m_mutex;
    // Guarded by m_mutex.
    bool m_isRemoving = false;
    std::set<std::string> m_told; ///< paths
    std::vector<Error> m_problems;
};

} // namespace sweeply
