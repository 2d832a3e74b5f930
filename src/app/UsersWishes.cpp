#include "app/UsersWishes.h"

#include "app/Application.h"
#include "app/ModuleCatalog.h"
#include "engine/CoordinatorPreferences.h"
#include "modules/ignorelist/IgnoreListPreferences.h"

#include <algorithm>

namespace sweeply {

namespace {

plist::Value arrayOf(const std::set<std::string>& texts) {
    return plist::arrayOf(std::vector<std::string>(texts.begin(), texts.end()));
}

} // namespace

void UsersWishes::add(Application& application) {
    auto& defaults = application.defaults();
    for (const auto& row : scanModules()) {
        for (const auto& module : row.switches) {
            const bool isOn = defaults.boolForKey(module.defaultsName);
            const auto known = m_switches.try_emplace(std::string(module.defaultsName), isOn).first;
            known->second = known->second && isOn;
        }
    }
    m_daysKept = std::max(m_daysKept, defaults.unsignedForKey(coordinator::kKeepRemovedDays));
    addLanguages(application);
    addIgnored(application);
    application.startInventory();
    const auto applications = application.applications().applicationsOnceKnown();
    m_applications.insert(applications.begin(), applications.end());
}

void UsersWishes::addLanguages(Application& application) {
    const auto& list = application.languageKeepList();
    if (const auto known = list.nativeLanguages(); !known)
        return addUnknown(known.error());
    auto* languages = &m_dearLanguages;
    for (const auto& row : list.rows()) {
        if (row.shortLanguageName == "en")
            languages = &m_otherLanguages;
        languages->push_back(row.shortLanguageName);
        m_keptLanguages[row.shortLanguageName] |= row.enabled;
    }
}

void UsersWishes::addIgnored(Application& application) {
    auto& ignored = application.ignoreList();
    for (const auto& module : ignored.uncheckedItems().moduleKeys()) {
        const auto items = ignored.uncheckedItems().ignoreListForController(module);
        m_uncheckedItems[module].insert(items.begin(), items.end());
    }
    const auto applications = ignored.applicationList().ignoreAppsArray();
    m_ignoredApplications.insert(applications.begin(), applications.end());
}

void UsersWishes::addUnknown(const Error& reason) {
    if (!m_languagesUnknown)
        m_languagesUnknown = reason;
}

TargetShare UsersWishes::share() const {
    TargetShare share{TargetPart::ofMachine(m_homes)};
    const auto hold = [&share](std::string_view key, plist::Value value) {
        share.preferences.emplace_back(key, std::move(value));
    };
    for (const auto& [key, isOn] : m_switches)
        hold(key, isOn);
    hold(coordinator::kKeepRemovedDays, m_daysKept);
    plist::Dictionary unchecked;
    for (const auto& [module, items] : m_uncheckedItems)
        unchecked.set(module, arrayOf(items));
    hold(ignorelist::kDisabledNodes, std::move(unchecked));
    hold(ignorelist::kApplications, arrayOf(m_ignoredApplications));
    plist::Dictionary kept;
    for (const auto& [language, isKept] : m_keptLanguages)
        kept.set(language, isKept);
    hold(languages::kLanguagesToLeave, std::move(kept));
    share.languages = m_dearLanguages;
    share.languages->value().insert(share.languages->value().end(), m_otherLanguages.begin(), m_otherLanguages.end());
    if (m_languagesUnknown)
        share.languages = Failure(*m_languagesUnknown);
    share.applications.emplace(m_applications.begin(), m_applications.end());
    return share;
}

} // namespace sweeply
