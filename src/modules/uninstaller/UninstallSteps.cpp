#include "modules/uninstaller/UninstallSteps.h"

#include "appcore/ResourceFinder.h"
#include "appcore/changes/ChangeGate.h"
#include "appcore/receipts/ReceiptFiles.h"
#include "engine/ADScanControllerView.h"
#include "engine/ScanCoordinator.h"
#include "formats/DisplayEscapes.h"
#include "platform/Alerts.h"
#include "platform/FileManager.h"
#include "platform/Localization.h"
#include "platform/MainThread.h"
#include "platform/SystemVersion.h"

#include <algorithm>
#include <unistd.h>

namespace sweeply {

bool UninstallSteps::asks(const std::string& title, const std::string& text, const std::string& yes) const {
    Alert alert;
    alert.style = Alert::Style::Informational;
    alert.title = title;
    alert.text = text;
    alert.buttons = {localizedButton("No"), yes};
    std::size_t answer = 0;
    m_services.mainThread.runAndWait([&] { answer = m_services.alerts.runAlert(alert).button; });
    return answer == 1;
}

bool UninstallSteps::stays(const Node& entry, ADScanController& module, const std::string& reason) {
    m_services.gate.stays(module.requestFor(entry, Operation::Remove), reason);
    return false;
}

UninstallSteps::Item UninstallSteps::itemOf(const Node& node) const {
    const std::lock_guard lock(m_treeLock);
    return {std::string(node.name()), node.path(), node.type()};
}

bool UninstallSteps::confirmsSystemApplication(const Node& entry, ADScanController& module) {
    const auto item = itemOf(entry);
    return item.type != nodetype::kSystemApplication ||
           asks(localizedString("Deleting system application"),
                localizedFormat("\"%@\" seems to be a system application. Removing it can corrupt your system. \nDo "
                                "you want to remove it anyway?",
                                {escapedForDisplay(item.name)}),
                localizedButton("Yes")) ||
           stays(entry, module, "stays: it is a system application, and its removal was not confirmed");
}

bool UninstallSteps::stopsApplications(const Node& entry, ADScanControllerView& module) {
    std::vector<ProcessControl::Application> applications;
    {
        const std::lock_guard lock(m_treeLock);
        for (const auto& child : entry.children())
            applications.push_back({std::string(entry.name()), child->path()});
    }
    return m_services.processes.tryToStopApplications(applications, module) ||
           stays(entry, module, "stays: it was not confirmed, or is still running");
}

void UninstallSteps::demandRights(const Node& entry, ADScanControllerView& module) {
    std::vector<Item> items;
    {
        const std::lock_guard lock(m_treeLock);
        addCheckedItems(entry, items);
    }
    if (std::ranges::any_of(items, [this](const Item& item) { return needsRights(item); }))
        module.globalScanController().authorisationDemanded();
}

void UninstallSteps::addCheckedItems(const Node& node, std::vector<Item>& items) const {
    for (const auto& child : node.children()) {
        if (child->hasChildren())
            addCheckedItems(*child, items);
        else if (child->ifEnabled())
            items.push_back(itemOf(*child));
    }
}

bool UninstallSteps::isReceipt(const Item& item) const {
    return item.name.find(kReceiptEntry) != std::string::npos && m_services.version.isSnowLeopardOrBetter();
}

bool UninstallSteps::needsRights(const Item& item) const {
    if (isReceipt(item))
        return true; // the database belongs to the machine
    if (::geteuid() == 0 || item.type == nodetype::kLoginItem)
        return false;
    const auto attributes = m_services.files.attributesOfItemAtPath(item.path, Links::DontFollow);
    return attributes && attributes->owner != ::geteuid();
}

ChangeRequest UninstallSteps::requestFor(const Node& node, const ADScanController& module) const {
    auto request = module.requestFor(node, Operation::Remove);
    const auto item = itemOf(node);
    if (item.type == nodetype::kLoginItem) {
        request.kind = ChangedKind::LoginItem;
        request.operation = Operation::TakeOffList;
    } else if (item.type == nodetype::kLaunchItem) {
        request.kind = ChangedKind::LaunchItem;
    } else if (isReceipt(item)) {
        request.kind = ChangedKind::Receipt;
        request.operation = Operation::ForgetReceipt;
    }
    return request;
}

std::vector<Error> UninstallSteps::obstaclesToKeeping(const ADScanController& module) const {
    const std::lock_guard lock(m_treeLock);
    std::vector<Error> obstacles;
    addObstacles(*module.rootNode(), module, obstacles);
    return obstacles;
}

void UninstallSteps::addObstacles(const Node& node, const ADScanController& module,
                                  std::vector<Error>& obstacles) const {
    for (const auto* children : {&node.children(), &node.invisibleChildren()}) {
        for (const auto& child : *children) {
            if (child->hasChildren() || child->hasInvisibleChildren()) {
                addObstacles(*child, module, obstacles);
            } else if (child->ifEnabled()) {
                const auto request = requestFor(*child, module);
                if (auto reason = m_services.gate.reasonAgainstKeeping(request); !reason.empty())
                    obstacles.push_back({ErrorKind::Unavailable, request.path, std::move(reason)});
            }
        }
    }
}

ChangeOutcome UninstallSteps::removeItem(const Node& node, ADScanController& module) {
    auto request = requestFor(node, module);
    const auto item = itemOf(node);
    if (item.type == nodetype::kSharedPackage &&
        !asks(localizedString("Deleting multiple application package"),
              localizedFormat("Package \"%@\" serves multiple applications. Removing it will make impossible to "
                              "uninstall or fix other applications later. It's highly recommended to leave it. Do you "
                              "want to remove it anyway?",
                              {escapedForDisplay(item.name)}),
              localizedButton("Yes")))
        return m_services.gate.stays(request,
                                     "stays: it serves several applications, and its removal was not confirmed");
    if (m_services.gate.isKeeping())
        request.operation = Operation::Keep;
    return m_services.gate.perform(request);
}

} // namespace sweeply
