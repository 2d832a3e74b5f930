#pragma once

#include "engine/ADScanController.h"
#include "modules/ModuleServices.h"

#include <string>
#include <string_view>

namespace sweeply {

class Workspace;

/// The photos that a photo library keeps scaled for a music player, in folders named "iPod Photo Cache" anywhere in the
/// home folder. Cleaning one leaves the folder and the files that keep its books.
class PhotoSyncCachesController final : public ADScanController {
  public:
    PhotoSyncCachesController(const ModuleServices& services, const Workspace& workspace);
    ~PhotoSyncCachesController() override { stopAndJoin(); }

    [[nodiscard]] std::string_view moduleName() const override { return "photo-caches"; }
    [[nodiscard]] std::string defaultsName() const override { return "CleanPhotoSyncCache"; }
    [[nodiscard]] bool needToSetUserDefalts() const override { return true; }
    [[nodiscard]] ChangeRequest changeFor(const Node& node) const override;

  protected:
    void scanThread() override;

  private:
    [[nodiscard]] std::string className() const override { return "PhotoSyncCachesController"; }
    /// May the search enter this folder? Of those that pass for files only photo libraries.
    [[nodiscard]] bool isEntered(const std::string& path) const;
    [[nodiscard]] bool holdsPhotos(const std::string& path) const;

    ModuleServices m_caches;
    const Workspace& m_workspace;
};

} // namespace sweeply
