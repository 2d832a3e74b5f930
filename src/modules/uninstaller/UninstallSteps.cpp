#include "modules/uninstaller/UninstallSteps.h"

#include "appcore/LoginItems.h"
#include "appcore/RemovalPrimitives.h"
#include "appcore/ResourceFinder.h"
#include "appcore/processes/LaunchItems.h"
#include "appcore/receipts/PackageManager.h"
#include "appcore/receipts/ReceiptFiles.h"
#include "engine/ADScanControllerView.h"
#include "engine/ScanCoordinator.h"
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

bool UninstallSteps::keep(const std::string& path, const std::string& reason) {
    return m_services.removals.failed(path, {ErrorKind::Other, path, reason});
}

UninstallSteps::Item UninstallSteps::itemOf(const Node& node) const {
    const std::lock_guard lock(m_treeLock);
    return {std::string(node.name()), node.path(), node.type()};
}

bool UninstallSteps::confirmsSystemApplication(const Node& entry) {
    const auto item = itemOf(entry);
    return item.type != nodetype::kSystemApplication ||
           asks(localizedString("Deleting system application"),
                localizedFormat("\"%@\" seems to be a system application. Removing it can corrupt your system. \nDo "
                                "you want to remove it anyway?",
                                {item.name}),
                localizedButton("Yes")) ||
           keep(item.path, "stays: it is a system application, and its removal was not confirmed");
}

bool UninstallSteps::stopsApplications(const Node& entry, ADScanControllerView& module) {
    std::vector<ProcessControl::Application> applications;
    {
        const std::lock_guard lock(m_treeLock);
        for (const auto& child : entry.children())
            applications.push_back({std::string(entry.name()), child->path()});
    }
    return m_services.processes.tryToStopApplications(applications, module) ||
           keep(itemOf(entry).path, "stays: it was not confirmed, or is still running");
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

bool UninstallSteps::removeItem(const Node& node) {
    const auto item = itemOf(node);
    if (item.type == nodetype::kLoginItem)
        return m_services.loginItems.removeLoginItemAtPath(item.path) ||
               keep(item.path, "the login item could not be removed");
    if (item.type == nodetype::kLaunchItem)
        m_services.launchItems.removeLaunchDaemon(item.path);
    if (item.type == nodetype::kSharedPackage &&
        !asks(localizedString("Deleting multiple application package"),
              localizedFormat("Package \"%@\" serves multiple applications. Removing it will make impossible to "
                              "uninstall or fix other applications later. It's highly recommended to leave it. Do you "
                              "want to remove it anyway?",
                              {item.name}),
              localizedButton("Yes")))
        return keep(item.path, "stays: it serves several applications, and its removal was not confirmed");
    if (isReceipt(item))
        return m_services.packages.removePkg(item.path) || keep(item.path, "the receipt could not be forgotten");
    return m_services.removals.tryToRemoveFileAtPath(item.path);
}

} // namespace sweeply
