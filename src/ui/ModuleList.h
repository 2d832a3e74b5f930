#pragma once

#include "engine/ScanController.h"

#include <QListWidget>
#include <functional>

namespace sweeply {

/// The list of modules on the left: check box, picture, name and live figures of each, under two headings. Main thread.
class ModuleList final : public QListWidget {
  public:
    /// `controller` outlives this. `show` is told of the row that is selected, by its view code. None is at first.
    ModuleList(ScanController& controller, SizeUnits units, std::function<void(std::uint8_t)> show);

    /// Takes over marks, sizes and progress.
    void refresh();
    void select(std::uint8_t viewCode);

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    class ModuleDelegate;

    void addHeading(const char* title);
    QListWidgetItem* addRow(std::uint8_t viewCode, const QString& name);
    [[nodiscard]] ScanObject* rowOf(const QListWidgetItem& item) const;

    ScanController& m_controller;
    const SizeUnits m_units;
    const std::function<void(std::uint8_t)> m_show;
    ModuleDelegate* const m_delegate;
    bool m_isRefreshing = false;
};

} // namespace sweeply
