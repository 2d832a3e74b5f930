#include "cli/sample/SampleParts.h"
#include "cli/sample/SampleWriter.h"
#include "formats/BillOfMaterials.h"
#include "platform/DirectoryEnumerator.h"

#include <optional>
#include <string>
#include <vector>

namespace sweeply::sample {

namespace {

constexpr std::size_t kLargestFile = 16 * 1024 * 1024;
constexpr std::uint32_t kInstalled = 1309521600; // noon on 1 July 2011
constexpr double kInstalledSince2001 = 331214400;

struct Receipt {
    std::string_view identifier;
    std::string_view prefix;                ///< install location, without a slash in front
    std::vector<std::string_view> contents; ///< below the prefix
    PropertyListForm form = PropertyListForm::Binary;
};

/// Files are in a package's bill with the modes that they were packed with, whatever this machine's mask made of them.
bom::Entry describe(const FileManager& files, const std::string& path, const FileAttributes& attributes) {
    bom::Entry entry;
    entry.group = 80;
    entry.modified = kInstalled;
    switch (attributes.type) {
    case FileType::Directory:
        entry.type = bom::EntryType::Directory;
        entry.mode = 040755;
        break;
    case FileType::SymbolicLink: {
        entry.type = bom::EntryType::SymbolicLink;
        entry.mode = 0120755;
        entry.linkTarget = files.destinationOfSymbolicLinkAtPath(path).value_or("");
        entry.size = static_cast<std::uint32_t>(entry.linkTarget.size());
        entry.checksum = bom::checksum(entry.linkTarget);
        break;
    }
    default:
        entry.mode = (attributes.mode & 0100) != 0 ? 0100755 : 0100644;
        entry.size = static_cast<std::uint32_t>(attributes.size);
        entry.checksum = bom::checksum(files.contentsAtPath(path, kLargestFile).value_or(""));
    }
    return entry;
}

/// The bill of everything at and below each of `contents`.
std::string billOf(SampleWriter& out, const std::string& location, const std::vector<std::string_view>& contents) {
    const FileManager& files = out.files();
    std::vector<bom::Entry> entries;
    const auto add = [&](const std::string& path) {
        const auto attributes = files.attributesOfItemAtPath(location + path, Links::DontFollow);
        if (!attributes)
            return out.fail(attributes.error());
        entries.push_back(describe(files, location + path, *attributes));
        entries.back().path = path;
    };
    for (std::string_view item : contents) {
        const std::string top(item);
        add(top);
        if (!files.directoryExistsAtPath(location + top))
            continue;
        DirectoryEnumerator below = files.enumeratorAtPath(location + top);
        while (const auto entry = below.next())
            add(top + "/" + entry->path);
    }
    return bom::write(entries);
}

/// In the package database: a property list and a bill beside each other.
void writeDatabaseReceipt(SampleWriter& out, const Receipt& receipt) {
    const std::string base = "/private/var/db/receipts/" + std::string(receipt.identifier);
    const std::string location = receipt.prefix.empty() ? "/" : "/" + std::string(receipt.prefix) + "/";
    out.propertyList(base + ".plist",
                     dictionary({{"InstallDate", plist::Date{kInstalledSince2001}},
                                 {"InstallPrefixPath", receipt.prefix},
                                 {"InstallProcessName", "Installer"},
                                 {"PackageFileName", std::string(receipt.identifier) + ".pkg"},
                                 {"PackageIdentifier", receipt.identifier},
                                 {"PackageVersion", "1.5"}}),
                     receipt.form);
    out.file(base + ".bom", billOf(out, location, receipt.contents));
}

/// A package's own folder, kept as its receipt.
void writeBundleReceipt(SampleWriter& out, const std::string& name, const Receipt& receipt) {
    const std::string contents = "/Library/Receipts/" + name + ".pkg/Contents";
    out.propertyList(contents + "/Info.plist",
                     dictionary({{"CFBundleIdentifier", receipt.identifier},
                                 {"CFBundleShortVersionString", "2.0"},
                                 {"IFPkgFlagAuthorizationAction", "AdminAuthorization"},
                                 {"IFPkgFlagDefaultLocation", "/" + std::string(receipt.prefix)},
                                 {"IFPkgFlagInstalledSize", 412},
                                 {"IFPkgFlagRelocatable", true},
                                 {"IFPkgFormatVersion", 0.1},
                                 {"IFPkgRelocatedPath", "./" + std::string(receipt.prefix)}}),
                     receipt.form);
    out.file(contents + "/PkgInfo", "pmkrpkg1");
    out.file(contents + "/Archive.bom", billOf(out, "/" + std::string(receipt.prefix) + "/", receipt.contents));
    out.file(contents + "/Resources/package_version", "major: 2\nminor: 0\n");
}

} // namespace

void writeReceipts(SampleWriter& out) {
    const Receipt database[] = {
        {"com.harborline.mail.pkg",
         "",
         {"Applications/Harbor Mail.app", "Library/Internet Plug-Ins/HarborView.plugin",
          "Library/LaunchDaemons/com.harborline.mail.helper.plist",
          "Library/PrivilegedHelperTools/com.harborline.mail.helper"}},
        // Two applications in one package.
        {"com.tidewater.suite.pkg", "Applications", {"Paper Trail.app", "Weather Vane.app"}, PropertyListForm::Xml},
        // No application at all.
        {"com.northbay.northlight.pkg", "Library/QuickTime", {"Northlight.component"}},
        // Of the system's own packages only those with optional contents count.
        {"com.apple.pkg.iPhoto", "", {"Applications/iPhoto.app"}},
        {"com.apple.pkg.Safari", "", {"Applications/Safari.app"}},
    };
    for (const Receipt& receipt : database)
        writeDatabaseReceipt(out, receipt);
    out.file("/private/var/db/receipts/com.driftwood.raft.pkg.bom", "BOMStore");

    writeBundleReceipt(out, "Paper Trail",
                       {"com.tidewater.papertrail.pkg", "Applications", {"Paper Trail.app"}, PropertyListForm::Xml});
    writeBundleReceipt(out, "Ledger",
                       {"com.northbay.ledger.pkg", "Applications", {"Ledger.app"}, PropertyListForm::Xml});
    // Very old ones: a plain file, and a folder without a bill.
    out.file("/Library/Receipts/BSD.pkg", "");
    out.propertyList("/Library/Receipts/Raft.pkg/Contents/Info.plist",
                     dictionary({{"CFBundleIdentifier", "com.driftwood.raft.pkg"}}));
    out.propertyList("/Library/Receipts/InstallHistory.plist",
                     plist::Array{dictionary({{"date", plist::Date{kInstalledSince2001}},
                                              {"displayName", "Harbor Mail"},
                                              {"packageIdentifiers", plist::Array{"com.harborline.mail.pkg"}},
                                              {"processName", "Installer"}})});
}

} // namespace sweeply::sample
