#include "appcore/LoginItems.h"

#include "appcore/FolderConstants.h"
#include "platform/FileManager.h"
#include "platform/SystemLog.h"
#include "platform/UserDefaults.h"

#include <algorithm>
#include <utility>

namespace sweeply {

namespace {

constexpr const char* kDomain = "~/Library/Preferences/loginwindow.plist";
constexpr const char* kItems = "AutoLaunchedApplicationDictionary";
constexpr std::size_t kLargestFile = std::size_t{16} << 20U;

} // namespace

std::string LoginItems::domainFile() const { return m_folders.expandTilde(kDomain); }

std::string LoginItems::pathOf(const plist::Value& item) {
    const auto* path = item.findString("Path");
    return path ? *path : std::string();
}

plist::Array LoginItems::loginItemsList() const {
    UserDefaults domain(m_files, domainFile(), m_log);
    const auto list = domain.objectForKey(kItems);
    return list && list->asArray() ? *list->asArray() : plist::Array();
}

bool LoginItems::writeLoginItemsList(plist::Array list) {
    UserDefaults domain(m_files, domainFile(), m_log);
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

bool LoginItems::isListed(std::string_view path) const {
    return std::ranges::any_of(loginItemsList(), [&](const plist::Value& item) { return pathOf(item) == path; });
}

Result<std::string> LoginItems::listFile() const { return m_files.contentsAtPath(domainFile(), kLargestFile); }

Result<void> LoginItems::putBack(std::string_view path, const std::string& file) {
    const auto earlier = plist::parse(file);
    const auto* dictionary = earlier ? earlier->asDictionary() : nullptr;
    const auto* value = dictionary ? dictionary->find(kItems) : nullptr;
    if (!value || !value->asArray())
        return Failure(Error{ErrorKind::Damaged, std::string(path), "the list that it was on cannot be read"});
    const auto isMeant = [&](const plist::Value& item) { return pathOf(item) == path; };
    const auto& items = *value->asArray();
    auto list = loginItemsList();
    if (std::ranges::any_of(list, isMeant))
        return {};

    auto rest = items;
    std::erase_if(rest, isMeant);
    auto without = *dictionary;
    without.set(kItems, rest);
    if (const auto now = listFile(); now && *now == plist::writeBinary(without))
        return m_files.writeAtomically(domainFile(), file);
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (isMeant(items[i]))
            list.insert(list.begin() + static_cast<std::ptrdiff_t>(std::min(i, list.size())), items[i]);
    }
    if (!writeLoginItemsList(std::move(list)))
        return Failure(Error{ErrorKind::Other, std::string(path), "the login item could not be put back"});
    return {};
}

} // namespace sweeply
