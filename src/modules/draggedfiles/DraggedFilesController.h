#pragma once

#include <functional>
#include <string>
#include <vector>

namespace sweeply {

class ADScanControllerView;
class ExtensionsScanController;

/// Shows the list of dragged files. Main thread.
class DraggedFilesView {
  public:
    virtual ~DraggedFilesView() = default;

    virtual void reloadData() {}
    virtual void showSheet() {}
    virtual void endSheet() {}
};

/// The files that were dropped on the program's icon, until the person says what is to become of them. Main thread.
class DraggedFilesController final {
  public:
    /// Where the files can go; all outlive this.
    struct Destinations {
        ADScanControllerView& languages;
        ADScanControllerView& universalBinaries;
        ADScanControllerView& devJunk;
        ADScanControllerView& applicationUninstaller;
        ADScanControllerView& eraser;
        ExtensionsScanController& extensions;
    };

    explicit DraggedFilesController(Destinations destinations) : m_destinations(destinations) {}

    void setView(DraggedFilesView* view) { m_view = view; }
    /// Called whenever the list has been dealt with.
    void setFinished(std::function<void()> finished) { m_finished = std::move(finished); }

    void addFileToListWithPath(const std::string& path);
    [[nodiscard]] const std::vector<std::string>& records() const { return m_records; }
    void showFileList();

    // What the person chooses. Each ends the sheet and empties the list.

    /// An extension goes to the uninstaller of its kind, everything else to that of applications.
    void uninstallApps();
    /// Takes out languages, processor code and developers' files.
    void slimApps();
    void quickRemove();
    void close();
    void escapePressed() { close(); }

  private:
    void removeRecords();
    void finishProcessingDraggedFiles();

    Destinations m_destinations;
    DraggedFilesView* m_view = nullptr;
    std::function<void()> m_finished = [] {};
    std::vector<std::string> m_records; ///< paths of the target
};

} // namespace sweeply
