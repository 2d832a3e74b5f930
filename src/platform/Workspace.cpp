#include "platform/Workspace.h"

#include "platform/BundleInfo.h"
#include "platform/DirectoryEnumerator.h"
#include "platform/StringExtras.h"
#include "platform/TargetPath.h"

#include <algorithm>
#include <vector>

namespace sweeply {

namespace {

/// Folders that are shown as one file whether or not an application claims them.
constexpr std::string_view kPackageExtensions[] = {
    // programs and what is loaded into them
    "action", "app", "appex", "bundle", "colorpicker", "component", "dictionary", "ideplugin", "kext", "mailbundle",
    "mdimporter", "menu", "osax", "palette", "plugin", "prefpane", "qlgenerator", "saver", "service", "wdgt",
    "webplugin", "workflow", "xcplugin", "xpc",
    // installers, disk images and virtual machines
    "dist", "download", "mpkg", "pkg", "pvm", "sparsebundle", "vmwarevm",
    // documents
    "aplibrary", "apvault", "band", "dsym", "dvdproj", "imovieproject", "key", "logic", "mbox", "migratedphotolibrary",
    "nib", "numbers", "pages", "pbproj", "photolibrary", "rcproject", "rtfd", "scptd", "template", "xcode",
    "xcodeproj"};

/// Documents whose owner is known without asking, so that no viewer can claim them.
constexpr struct {
    std::string_view extension;
    std::string_view bundleIdentifier;
} kKnownOwners[] = {
    {"migratedphotolibrary", "com.apple.iPhoto"},
    {"photolibrary", "com.apple.iPhoto"},
};

} // namespace

Workspace::Workspace(const FileManager& files, std::string applicationsFolder)
    : m_files(files), m_applicationsFolder(std::move(applicationsFolder)) {}

bool Workspace::isFilePackageAtPath(std::string_view path) const {
    if (!m_files.directoryExistsAtPath(path))
        return false;
    const std::string extension = lowercaseString(pathExtension(path));
    if (!extension.empty()) {
        std::call_once(m_read, [this] { readDocumentTypes(); });
        if (m_packageExtensions.contains(extension))
            return true;
    }
    const auto info = infoOfBundle(m_files, path);
    return info && info->findString("CFBundlePackageType") != nullptr;
}

std::optional<DocumentOwner> Workspace::applicationForFile(std::string_view path) const {
    std::call_once(m_read, [this] { readDocumentTypes(); });
    const auto owner = m_owners.find(lowercaseString(pathExtension(path)));
    if (owner == m_owners.end())
        return std::nullopt;
    return owner->second;
}

void Workspace::readDocumentTypes() const {
    m_packageExtensions.insert(std::begin(kPackageExtensions), std::end(kPackageExtensions));
    for (const auto& known : kKnownOwners)
        m_owners.emplace(known.extension, DocumentOwner{std::string(known.bundleIdentifier), {}});

    std::vector<std::string> applications;
    DirectoryEnumerator enumerator = m_files.enumeratorAtPath(m_applicationsFolder);
    while (const auto entry = enumerator.next()) {
        if (entry->type != FileType::Directory || pathExtension(entry->path) != "app")
            continue;
        applications.push_back(joinedPath(m_applicationsFolder, entry->path));
        enumerator.skipDescendants();
    }
    // The first to claim a document keeps it: let that not depend on the order in the folder.
    std::sort(applications.begin(), applications.end());
    for (const std::string& application : applications)
        readDocumentTypesOf(application);
}

void Workspace::readDocumentTypesOf(const std::string& applicationPath) const {
    const auto info = infoOfBundle(m_files, applicationPath);
    const std::string* identifier = info ? info->findString("CFBundleIdentifier") : nullptr;
    if (identifier == nullptr)
        return;
    for (auto& [extension, owner] : m_owners) {
        if (owner.path.empty() && owner.bundleIdentifier == *identifier)
            owner.path = applicationPath;
    }

    const plist::Value* types = info->find("CFBundleDocumentTypes");
    if (types == nullptr || types->asArray() == nullptr)
        return;
    for (const plist::Value& type : *types->asArray()) {
        const plist::Value* extensions = type.find("CFBundleTypeExtensions");
        if (extensions == nullptr || extensions->asArray() == nullptr)
            continue;
        // An application with the role "None" only lends its icon.
        const std::string* role = type.findString("CFBundleTypeRole");
        const bool opens = role == nullptr || *role != "None";
        const plist::Value* isPackage = type.find("LSTypeIsPackage");
        for (const plist::Value& value : *extensions->asArray()) {
            const std::string* extension = value.asString();
            if (extension == nullptr || extension->empty() || *extension == "*")
                continue;
            if (opens)
                m_owners.try_emplace(lowercaseString(*extension), DocumentOwner{*identifier, applicationPath});
            if (isPackage != nullptr && isPackage->asBool() == true)
                m_packageExtensions.insert(lowercaseString(*extension));
        }
    }
}

} // namespace sweeply
