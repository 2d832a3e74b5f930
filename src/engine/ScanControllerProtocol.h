#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace sweeply {

enum class WorkMode : int { Cleaner = 0, Uninstaller = 1 };

/// What a row of the module list may ask of its module. Any thread may ask; the starts belong to the main thread, and
/// startClean to the thread that does the cleaning.
class ScanControllerProtocol {
  public:
    virtual ~ScanControllerProtocol() = default;

    [[nodiscard]] virtual bool shouldRespondToDragEvents() const = 0;
    [[nodiscard]] virtual WorkMode workMode() const = 0;
    [[nodiscard]] virtual std::uint64_t totalSize() const = 0;
    /// Top-level entries found, not files.
    [[nodiscard]] virtual std::size_t filesFound() const = 0;
    [[nodiscard]] virtual bool ifCleanRunning() const = 0;
    [[nodiscard]] virtual bool ifScanRunning() const = 0;
    [[nodiscard]] virtual std::string statusText() const = 0;
    /// 0 to 1; 1 for a module that has announced no work.
    [[nodiscard]] virtual float procentDone() const = 0;

    virtual void prepareForClean() = 0;
    virtual void prepareForScan() = 0;
    virtual void setEveryObjectEnabled(bool enabled) = 0;
    /// Cleans on the calling thread and returns when done.
    virtual void startClean() = 0;
    /// Returns at once; the module scans on a thread of its own.
    virtual void startScan() = 0;
};

} // namespace sweeply
