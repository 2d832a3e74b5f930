#pragma once

#include "ui/MapView.h"
#include "ui/SpaceWalk.h"

#include <QTimer>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class QLabel;
class QPushButton;
class QToolButton;
class QTreeWidget;

namespace sweeply {

/// "What takes the space?": what is in one folder of the target, largest first, as a list and as a map. Shows what has
/// been measured so far, goes into folders and out of them, and changes nothing. Main thread.
class SpacePage final : public QWidget, private MapSource {
  public:
    struct Services {
        const FileManager& files;
        SizeUnits units;
        /// The target's path of a folder of this machine; says so and gives nothing for one that is not in the target.
        std::function<std::optional<std::string>(const QString&)> targetPath;
    };

    /// `services.files` outlives this. Looks at nothing before it is shown.
    explicit SpacePage(Services services);

    /// Measures the target's folder at `path`.
    void showFolder(const std::string& path);
    [[nodiscard]] const std::string& folder() const { return m_path; }
    [[nodiscard]] bool isMeasuring() const { return m_looking.isActive(); }
    /// Largest first.
    [[nodiscard]] const std::vector<FolderPart>& parts() const { return m_parts; }
    [[nodiscard]] MapView& map() const { return *m_map; }

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    [[nodiscard]] MapLook lookOf(std::size_t item) const override;
    [[nodiscard]] QString toolTipOf(std::size_t item) const override;
    void select(std::size_t item) override;
    void toggle(std::size_t) override {}
    void enter(std::size_t item) override;
    void leave() override;

    void chooseFolder();
    /// Stops a walk, or begins it anew.
    void stopOrRepeat();
    void takeOver();
    void fillList();
    void tellState();
    [[nodiscard]] QString sizeOf(const FolderPart& part) const;

    const Services m_services;
    std::string m_path;
    std::vector<FolderPart> m_parts;
    bool m_wasStopped = false;

    QLabel* m_place;
    QToolButton* m_up;
    QPushButton* m_stop;
    QTreeWidget* m_list;
    MapView* m_map;
    QLabel* m_state;
    QTimer m_looking; ///< while the walk is under way
    SpaceWalk m_walk;
};

} // namespace sweeply
