#include "engine/ScanObject.h"

#include "engine/ADScanControllerView.h"
#include "engine/ScanCoordinator.h"

#include <algorithm>
#include <utility>

namespace sweeply {

ScanObject::ScanObject() = default;

ScanObject::ScanObject(std::string name, std::string description, Icon icon, Icon toolbarIcon, std::uint8_t view)
    : m_contentView(view), m_icon(icon), m_toolbarIcon(toolbarIcon), m_name(std::move(name)),
      m_description(std::move(description)), m_checked(false) {}

void ScanObject::setCorrespondingScanController(ADScanControllerView& controller) {
    m_controller = &controller;
    controller.setScanObject(this);
}

void ScanObject::setAsHeaderRow() {
    m_isHeaderRow = true;
    m_checkable = false;
}

bool ScanObject::enabled() const {
    if (!m_controller)
        return true;
    if (m_controller->workMode() == WorkMode::Uninstaller)
        return false;
    return !m_controller->globalScanController().ifCleanRunning() && !isScanning();
}

void ScanObject::setChecked(bool checked) {
    if (checked == m_checked || !enabled())
        return;
    m_checked = checked;
    if (m_controller) {
        for (auto* part : m_controller->parts())
            part->setTakesPartInScan(checked);
        m_controller->setEveryObjectEnabled(checked);
        m_controller->globalScanController().refreshInterface();
    }
}

bool ScanObject::check() {
    if (!enabled())
        return false;
    setChecked(!m_checked);
    return true;
}

std::string ScanObject::description() const { return m_controller ? m_controller->statusText() : m_description; }

std::uint64_t ScanObject::size() const { return m_controller ? m_controller->totalSize() : 0; }
std::size_t ScanObject::filesFound() const { return m_controller ? m_controller->filesFound() : 0; }
float ScanObject::progress() const { return m_controller ? m_controller->procentDone() : 0.0F; }
bool ScanObject::isScanning() const { return m_controller && m_controller->ifScanRunning(); }
bool ScanObject::hasLooked() const {
    return m_controller && std::ranges::any_of(m_controller->parts(), &ADScanController::hasLooked);
}
bool ScanObject::isRemoving() const { return m_controller && m_controller->ifCleanRunning(); }

} // namespace sweeply
