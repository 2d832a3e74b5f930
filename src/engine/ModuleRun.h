#pragma once

#include "appcore/WorkControl.h"
#include "engine/EngineServices.h"
#include "engine/RunFlags.h"
#include "platform/Error.h"

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>

namespace sweeply {

/// A module at work: how far it is, what it is at, and the pauses and stops that it obeys. Thread-safe: workers say
/// what they did, whoever draws asks, the main thread pauses and stops.
class ModuleRun : public WorkControl {
  public:
    explicit ModuleRun(const EngineServices& services) : m_services(services) {}
    ModuleRun(const ModuleRun&) = delete;
    ModuleRun& operator=(const ModuleRun&) = delete;

    [[nodiscard]] bool stopped() const override { return m_flags.stopped(); }
    [[nodiscard]] bool ifPaused() const override { return m_flags.paused(); }
    virtual void setStopped(bool stopped) { m_flags.setStopped(stopped); }
    virtual void setPaused(bool paused) { m_flags.setPaused(paused); }
    void waitWhilePaused() override { m_flags.waitWhilePaused(); }
    [[nodiscard]] std::stop_token stopToken() const override { return m_flags.stopToken(); }
    void pauseRun() { m_flags.setPaused(true); }
    /// Also takes back a stop: the coordinator says so before each run.
    void continueRun();
    void stopRun();

    /// Rests as long as a module should after each item.
    void sleepAfterItem();
    /// Rests as long as a module should before it goes into a node that asks for it.
    void sleepBeforeRemoval();

    void incFoundObjectsCount() { ++m_countOfFilesFound; }
    void decFoundObjectsCount() { --m_countOfFilesFound; }
    void incTotalProcentageBy(std::uint32_t units) { m_totalProcentage += units; }
    void setTotalProcentage(std::uint32_t units) { m_totalProcentage = units; }
    void incProgress() { incProgressBy(1); }
    void incProgressBy(std::uint32_t units);
    void incTotalSizeDoneWithInt(std::uint64_t bytes);
    /// Says what the worker deals with now, for whoever shows progress.
    void setCurrentItem(std::string_view path);
    [[nodiscard]] virtual std::string currentItem() const;
    /// Adds what the file manager does not by itself to the target's problems.
    void reportProblem(const Error& error);

  protected:
    /// What a run announced and did.
    struct Progress {
        std::uint64_t total;
        std::uint64_t done;
    };
    /// In units of work.
    [[nodiscard]] Progress scanProgress() const { return {m_totalProcentage, m_totalProcentDone}; }
    /// In bytes.
    [[nodiscard]] Progress cleanProgress() const { return {m_totalSizeAtCleanStart, m_totalSizeDone}; }
    void forgetUnits() { m_totalProcentage = m_totalProcentDone = 0; }
    /// For a scan: nothing is announced, done or found yet.
    void startProgress();
    /// For a clean that has `bytes` to deal with.
    void startProgress(std::uint64_t bytes);

  private:
    const EngineServices& m_services;
    RunFlags m_flags;
    std::atomic<std::uint32_t> m_countOfFilesFound{0};
    std::atomic<std::uint64_t> m_totalSizeAtCleanStart{0}; ///< bytes
    std::atomic<std::uint64_t> m_totalSizeDone{0};         ///< bytes
    std::atomic<std::uint32_t> m_totalProcentage{0};       ///< work units
    std::atomic<std::uint32_t> m_totalProcentDone{0};      ///< work units

    mutable std::mutex m_currentItemMutex;
    std::string m_currentItem; ///< guarded by m_currentItemMutex
};

} // namespace sweeply
