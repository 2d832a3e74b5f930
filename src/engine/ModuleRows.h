#pragma once

#include "engine/ADScanControllerView.h"
#include "engine/ScanObject.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace sweeply {

class RunRequests;

/// All modules, in the order in which they scan and clean, with the rows of the list that stand for them, and their
/// figures added up.
///
/// The list is made before the first run and belongs to the main thread; figures may be asked for on any.
class ModuleRows final {
  public:
    void add(std::unique_ptr<ScanObject> row, std::unique_ptr<ADScanControllerView> module);

    [[nodiscard]] const std::vector<std::unique_ptr<ScanObject>>& rows() const { return m_rows; }
    [[nodiscard]] const std::vector<std::unique_ptr<ADScanControllerView>>& modules() const { return m_modules; }
    /// Null where no module has that view.
    [[nodiscard]] ADScanControllerView* moduleForViewCode(std::uint8_t viewCode) const;
    /// Null where the row has no module or does not exist.
    [[nodiscard]] ADScanControllerView* moduleOfRow(std::size_t row) const;
    /// The modules that a scan of everything asks: those of cleaners' rows that are checked. Each asks those of its
    /// parts that are switched on.
    [[nodiscard]] std::vector<ADScanControllerView*> modulesToScan() const;
    /// Is any row of a cleaner checked?
    [[nodiscard]] bool ifAnyEnabled() const;

    /// Marks a cleaner's row when any part of its module is switched on, another when anything in its module is
    /// checked.
    void takeMarksFromModules();
    /// Marks each row as the stored switches say.
    void takeMarksFromPreferences(const UserDefaults& defaults);

    /// Has the modules in which anything is checked clean, one after another, until a stop is asked for. What an
    /// uninstaller lists is left alone: it goes when "Uninstall" is pressed and never along with something else. On the
    /// removal's thread.
    void cleanWhatIsChecked(const RunRequests& requests);

    /// Does that have the row's module clean now?
    [[nodiscard]] static bool takesPartInRemoval(const ScanObject& row);

    [[nodiscard]] bool ifScanRunning() const;
    [[nodiscard]] bool ifCleanRunning() const;
    void joinScanThreads();

    [[nodiscard]] std::uint64_t totalSize() const;
    /// What a removal would free.
    [[nodiscard]] std::uint64_t foundSize() const;
    [[nodiscard]] std::uint64_t filesFound() const;
    [[nodiscard]] std::uint64_t filesFoundInEnabled() const;
    [[nodiscard]] std::uint64_t filesFoundForRemove() const;
    /// 0 to 1; no module counts for more than the work it announced.
    [[nodiscard]] float totalProcentDone() const;

  private:
    template<typename Figure>
    [[nodiscard]] std::uint64_t sumOf(Figure figure) const;

    std::vector<std::unique_ptr<ADScanControllerView>> m_modules;
    std::vector<std::unique_ptr<ScanObject>> m_rows;
};

} // namespace sweeply
