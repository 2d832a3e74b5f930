#include "engine/ModuleRows.h"

#include "engine/ModuleSettings.h"
#include "engine/RunRequests.h"

#include <algorithm>
#include <utility>

namespace sweeply {

namespace {

constexpr std::uint8_t kLastCleanerView = 6; // the later ones uninstall and erase what is dropped on them

bool isOfCleaner(const ScanObject& row) { return row.viewName() <= kLastCleanerView; }

bool takesPartInScan(const ScanObject& row) { return row.checked() && isOfCleaner(row); }

bool markFor(const ScanObject& row, ADScanControllerView& module) {
    return isOfCleaner(row) ? std::ranges::any_of(module.parts(), &ADScanController::takesPartInScan)
                            : module.ifAnyEnabled();
}

} // namespace

void ModuleRows::add(std::unique_ptr<ScanObject> row, std::unique_ptr<ADScanControllerView> module) {
    row->setCorrespondingScanController(*module);
    row->quietSetEnabled(markFor(*row, *module));
    m_rows.push_back(std::move(row));
    m_modules.push_back(std::move(module));
}

ADScanControllerView* ModuleRows::moduleForViewCode(std::uint8_t viewCode) const {
    const auto found = std::ranges::find_if(m_rows, [&](const auto& row) { return row->viewName() == viewCode; });
    return found == m_rows.end() ? nullptr : (*found)->correspondingScanController();
}

ADScanControllerView* ModuleRows::moduleOfRow(std::size_t row) const {
    return row < m_rows.size() ? m_rows[row]->correspondingScanController() : nullptr;
}

std::vector<ADScanControllerView*> ModuleRows::modulesToScan() const {
    std::vector<ADScanControllerView*> modules;
    for (const auto& row : m_rows) {
        if (takesPartInScan(*row) && row->correspondingScanController())
            modules.push_back(row->correspondingScanController());
    }
    return modules;
}

bool ModuleRows::ifAnyEnabled() const {
    return std::ranges::any_of(m_rows, [](const auto& row) { return takesPartInScan(*row); });
}

void ModuleRows::takeMarksFromModules() {
    for (const auto& row : m_rows) {
        if (auto* module = row->correspondingScanController())
            row->quietSetEnabled(markFor(*row, *module));
    }
}

void ModuleRows::takeMarksFromPreferences(const UserDefaults& defaults) {
    for (const auto& row : m_rows)
        row->setChecked(isRowCheckedByPreferences(row->viewName(), defaults));
}

void ModuleRows::cleanWhatIsChecked(const RunRequests& requests) {
    for (const auto& module : m_modules)
        module->prepareForGlobalClean();
    for (const auto& row : m_rows) {
        if (requests.isStopped())
            break;
        if (takesPartInRemoval(*row))
            row->correspondingScanController()->startClean();
    }
}

bool ModuleRows::takesPartInRemoval(const ScanObject& row) {
    auto* module = row.correspondingScanController();
    return module && module->ifAnyEnabled() && module->parts().front()->workMode() == WorkMode::Cleaner;
}

bool ModuleRows::ifScanRunning() const {
    return std::ranges::any_of(m_modules, [](const auto& module) { return module->ifScanRunning(); });
}

bool ModuleRows::ifCleanRunning() const {
    return std::ranges::any_of(m_modules, [](const auto& module) { return module->ifCleanRunning(); });
}

void ModuleRows::joinScanThreads() {
    for (const auto& module : m_modules)
        module->joinScanThread();
}

// Figures

template<typename Figure>
std::uint64_t ModuleRows::sumOf(Figure figure) const {
    std::uint64_t sum = 0;
    for (const auto& module : m_modules)
        sum += figure(*module);
    return sum;
}

std::uint64_t ModuleRows::totalSize() const {
    return sumOf([](const auto& module) { return module.totalSize(); });
}

std::uint64_t ModuleRows::foundSize() const {
    return sumOf([](const auto& module) { return module.ifAnyEnabled() ? module.totalSize() : 0; });
}

std::uint64_t ModuleRows::filesFound() const {
    return sumOf([](const auto& module) { return module.filesFound(); });
}

std::uint64_t ModuleRows::filesFoundInEnabled() const {
    return sumOf([](const auto& module) { return module.filesFoundInEnabled(); });
}

std::uint64_t ModuleRows::filesFoundForRemove() const {
    return sumOf([](const auto& module) { return module.filesFoundForRemove(); });
}

float ModuleRows::totalProcentDone() const {
    std::uint64_t total = 0;
    std::uint64_t done = 0;
    for (const auto& module : m_modules) {
        const std::uint64_t all = module->totalProcentage();
        total += all;
        done += std::min(module->totalProcentageDone(), all);
    }
    return total == 0 ? 1.0F : static_cast<float>(done) / static_cast<float>(total);
}

} // namespace sweeply
