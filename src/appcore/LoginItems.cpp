#include "appcore/LoginItems.h"

#include "appcore/FolderConstants.h"
#include "platform/SystemLog.h"
#include "platform/UserDefaults.h"

#include <utility>

namespace sweeply {

namespace {

constexpr const char* kDomain = "~/Library/Preferences/loginwindow.plist";
constexpr const char* kItems = "AutoLaunchedApplicationDictionary";

} // namespace

std::string LoginItems::pathOf(const plist::Value& item) {
    const auto* path = item.findString("Path");
    return path ? *path : std::string();
}

plist::Array LoginItems::loginItemsList() const {
    UserDefaults domain(m_files, m_folders.expandTilde(kDomain), m_log);
    const auto list = domain.objectForKey(kItems);
    return list && list->asArray() ? *list->asArray() : plist::Array();
}

bool LoginItems::writeLoginItemsList(plist::Array list) {
    UserDefaults domain(m_files, m_folders.expandTilde(kDomain), m_log);
    domain.setObject(kItems, std::move(list));
    const auto saved = domain.synchronize();
    if (!saved)
        m_log.log(saved.error().message());
    return saved.has_value();
}

bool LoginItems::removeLoginItemAtPath(std::string_view path) {
    auto list = loginItemsList();
    if (std::erase_if(list, [&](const plist::Value& item) { return pathOf(item) == path; }) == 0)
        return true;
    return writeLoginItemsList(std::move(list));
}

} // namespace sweeply
