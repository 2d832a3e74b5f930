#include "appcore/PluginCategories.h"

#include "appcore/FolderConstants.h"
#include "platform/Localization.h"
#include "platform/TargetPath.h"

namespace sweeply {

std::vector<PluginCategory> findAllPlugins(const FolderConstants& folders) {
    return {
        {"QuickTime Player", translatable("QuickTime Player plugins"), Icon::Plugin, {folders.QUICKTIMEPLUGINPATH}},
        {"Safari", translatable("Safari plugins"), Icon::Plugin, {folders.WEBBROWSERSPLUGINPATH}},
        {"QuickLook", translatable("QuickLook plugins"), Icon::Plugin, {folders.QUICKLOOKPLUGINPATH}},
        {"Finder", translatable("Finder plugins"), Icon::Plugin, {folders.FINDERPLUGINPATH}},
        {"Spotlight", translatable("Spotlight plugins"), Icon::Plugin, {folders.SPOTLIGHTPLUGINPATH}},
        {"InputManagers", translatable("InputManagers"), Icon::Plugin, {folders.INPUTMANAGERSPLUGINPATH}},
        {"iTunes", translatable("iTunes plugins"), Icon::Plugin, {folders.ITUNESPLUGINPATH}},
        {"Address Book", translatable("Address Book plugins"), Icon::Plugin, {folders.ADDRESSBOOKPLUGINPATH}},
        {"Screen Savers", translatable("Screen Savers"), Icon::Plugin, {folders.SCREENSAVERSPATH}, false},
        {"Dictionary", translatable("Dictionaries"), Icon::Plugin, {folders.DICTIONARIESPATH}, false},
        {"Mail", translatable("Mail plugins"), Icon::Plugin, {folders.MAILPLUGINPATH}},
        {"Services", translatable("Services"), Icon::Plugin, {folders.SERVICESPATH}},
        {"growlTicket", translatable("Growl plugins"), Icon::Plugin, {folders.GROWLPATH}},
        {"LoginItemIcon",
         translatable("Startup Items"),
         Icon::StartupItem,
         {folders.LAUNCHDAEMONSPATH, folders.LAUNCHAGENTSPATH},
         false},
        {"osax", translatable("Scripting Additions"), Icon::Plugin, {folders.SCRIPTINGADDITIONSPATH}},
    };
}

std::vector<std::string> systemFolders(const PluginCategory& category) {
    std::vector<std::string> paths;
    for (const auto& folder : category.folders)
        paths.push_back(normalisedPath(folder));
    return paths;
}

std::vector<std::string> userFolders(const PluginCategory& category, const FolderConstants& folders) {
    std::vector<std::string> paths;
    for (const auto& folder : category.folders)
        paths.push_back(normalisedPath(folders.home + "/" + folder));
    return paths;
}

} // namespace sweeply
