#pragma once

#include <QTabWidget>
#include <functional>

namespace sweeply {

class ADScanControllerView;
class ExtensionsScanController;
class ResultPage;

/// The extensions' row as four pages in tabs: what is left over of them, and each kind that is installed. Main thread.
class ExtensionsPage final : public QTabWidget {
  public:
    using MakePage =
        std::function<ResultPage*(ADScanControllerView& module, const QString& title, const QString& hint)>;

    /// `extensions` outlives this and is told which tab is selected. `makePage` is called at once, for each tab.
    ExtensionsPage(ExtensionsScanController& extensions, const MakePage& makePage);
};

} // namespace sweeply
