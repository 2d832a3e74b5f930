#include "modules/draggedfiles/DropTargets.h"

#include "engine/ADScanControllerView.h"
#include "platform/Localization.h"
#include "platform/SystemLog.h"

namespace sweeply {

bool DropTarget::accepts(const Drag& drag) const {
    return drag.allowsGenericOperation && (drag.offersFileNames || (takesOwnPaths() && drag.offersOwnPaths));
}

bool DropTarget::draggingEntered(const Drag& drag) {
    const bool isAccepted = accepts(drag);
    if (isAccepted)
        showImage(true);
    return isAccepted;
}

bool DropTarget::performDragOperation(const Drag& drag) {
    if (!accepts(drag))
        return false;
    const auto& paths = drag.offersFileNames ? drag.fileNames : drag.ownPaths;
    if (!paths) {
        m_log.log(formatText(complaint(), {drag.source}));
        return false;
    }
    m_delegate.receiveDragData(*paths);
    m_needsDisplay();
    return true;
}

void DropTarget::showImage(bool full) {
    m_showsFullImage = full;
    m_needsDisplay();
}

} // namespace sweeply
