#pragma once

#include "engine/ScanControllerProtocol.h"
#include "engine/tree/Icon.h"

#include <atomic>
#include <cstdint>
#include <string>

namespace sweeply {

class ADScanControllerView;

/// One row of the module list: a module's name and check box, and its live figures. Main thread.
class ScanObject final {
  public:
    /// A row with a check box. `view` is the code of the module's view.
    ScanObject(std::string name, std::string description, Icon icon, Icon toolbarIcon, std::uint8_t view);
    /// A row with neutral texts and pictures, checked.
    ScanObject();

    /// The module that the row stands for; not owned. It learns which row it has.
    void setCorrespondingScanController(ADScanControllerView& controller);
    [[nodiscard]] ADScanControllerView* correspondingScanController() const { return m_controller; }

    /// Makes it a heading, without a check box.
    void setAsHeaderRow();
    [[nodiscard]] bool isHeaderRow() const { return m_isHeaderRow; }
    [[nodiscard]] bool checkable() const { return m_checkable; }
    [[nodiscard]] bool checked() const { return m_checked; }
    /// May the check box be changed now?
    [[nodiscard]] bool enabled() const;
    /// Checks or unchecks the row, its module's switches and everything in its module; nothing unless enabled().
    void setChecked(bool checked);
    /// Sets the mark and nothing else.
    void quietSetEnabled(bool checked) { m_checked = checked; }
    /// Toggles; false when that is not possible now.
    bool check();

    [[nodiscard]] const std::string& name() const { return m_name; }
    /// What the module is for.
    [[nodiscard]] const std::string& purpose() const { return m_description; }
    /// The module's own status where it has one.
    [[nodiscard]] std::string description() const;
    [[nodiscard]] Icon icon() const { return m_icon == Icon::None ? Icon::GenericFolder : m_icon; }
    [[nodiscard]] Icon toolbarIcon() const { return m_toolbarIcon == Icon::None ? Icon::GenericFolder : m_toolbarIcon; }
    [[nodiscard]] std::uint8_t viewName() const { return m_contentView; }

    // The module's figures, neutral without one

    /// Has any part of the module been scanned? Until then its size of 0 says nothing.
    [[nodiscard]] bool hasLooked() const;
    [[nodiscard]] std::uint64_t size() const;
    [[nodiscard]] std::size_t filesFound() const;
    [[nodiscard]] float progress() const;
    [[nodiscard]] float progressDone() const { return progress(); }
    [[nodiscard]] float progressLeft() const { return 1.0F - progress(); }
    [[nodiscard]] std::string progressString() const { return "Progress string"; }
    [[nodiscard]] std::string statusString() const { return "Status string"; }
    [[nodiscard]] bool isScanning() const;
    [[nodiscard]] bool isRemoving() const;

  private:
    std::uint8_t m_contentView = 0;
    Icon m_icon = Icon::GenericFolder;
    Icon m_toolbarIcon = Icon::GenericFolder;
    std::string m_name = "name";
    std::string m_description = "description";
    bool m_isHeaderRow = false;
    bool m_checkable = true;
    std::atomic<bool> m_checked = true; ///< read by the removal's thread too
    ADScanControllerView* m_controller = nullptr;
};

} // namespace sweeply
