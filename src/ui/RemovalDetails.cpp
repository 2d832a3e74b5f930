#include "ui/RemovalDetails.h"

#include "appcore/changes/OwnRights.h"
#include "engine/ADScanController.h"
#include "modules/uninstaller/UninstallSteps.h"
#include "platform/Localization.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace sweeply {

namespace {

/// nullptr where it simply goes.
const char* whatBecomesOf(const ChangeRequest& request) {
    switch (request.operation) {
    case Operation::Empty:
        return translatable("is emptied and stays");
    case Operation::Slim:
        return translatable("loses code and stays");
    case Operation::Overwrite:
        return translatable("is overwritten first");
    case Operation::TakeOffList:
        return translatable("is taken off the list");
    default:
        return nullptr;
    }
}

const char* obstacleOf(OwnRights::Verdict verdict) {
    switch (verdict) {
    case OwnRights::Verdict::NeedAdministrator:
        return translatable("needs an administrator");
    case OwnRights::Verdict::ReadOnlyVolume:
        return translatable("its volume is read-only");
    case OwnRights::Verdict::Suffice:
        break;
    }
    return nullptr;
}

} // namespace

RemovalDetails RemovalDetails::of(const std::vector<PreviewedModule>& preview, const FileManager& files,
                                  const UninstallSteps& steps, const std::function<bool()>& isStopped) {
    RemovalDetails details;
    OwnRights rights(files);
    for (const auto& [row, module, nodes, size] : preview) {
        Module found;
        const bool isAdministratorDemanded = module->priviligesNeededToClean() && !OwnRights::areAdministrators();
        for (const auto& node : nodes) {
            if (isStopped())
                return details;
            const auto request = module->changeFor(*node);
            auto verdict = rights.forChange(request);
            if (isAdministratorDemanded && verdict == OwnRights::Verdict::Suffice)
                verdict = OwnRights::Verdict::NeedAdministrator;
            found.needingAdministrator += verdict == OwnRights::Verdict::NeedAdministrator ? 1U : 0U;
            details.isVolumeReadOnly = details.isVolumeReadOnly || verdict == OwnRights::Verdict::ReadOnlyVolume;
            ListedItem item{request.path, request.size, {}};
            for (const char* note : {whatBecomesOf(request), obstacleOf(verdict)}) {
                if (note)
                    item.note += (item.note.empty() ? "" : "; ") + localizedString(note);
            }
            found.items.push_back(std::move(item));
        }
        if (module->removesWhatCannotBeMadeAgain())
            std::ranges::move(steps.obstaclesToKeeping(*module), std::back_inserter(details.obstacles));
        details.needingAdministrator += found.needingAdministrator;
        details.modules.push_back(std::move(found));
    }
    return details;
}

} // namespace sweeply
