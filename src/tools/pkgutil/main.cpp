// pkgutil [--volume ROOT] --pkgs[=REGEXP] | --pkg-info ID | --files ID | --lsbom ID | --forget ID
// [--only-files|--only-dirs]
//
// Reads and forgets the receipts of installer packages of the Mac OS X system below ROOT, like the Mac's own tool.
#include "formats/BomReader.h"
#include "formats/PropertyList.h"
#include "platform/FileManager.h"
#include "platform/TargetPath.h"
#include "tools/Complaint.h"

#include <algorithm>
#include <cstdio>
#include <regex>
#include <string>
#include <vector>

namespace {

using namespace sweeply;

constexpr const char* kReceipts = "/var/db/receipts/";
constexpr std::size_t kLargestReceipt = std::size_t{256} << 20U;
/// Property lists count from the first moment of 2001, everybody else from that of 1970.
constexpr double kSecondsFrom1970To2001 = 978'307'200;

constexpr const char* kUsage =
    "usage: pkgutil [--volume ROOT] --pkgs[=REGEXP]\n"
    "       pkgutil [--volume ROOT] --pkg-info ID\n"
    "       pkgutil [--volume ROOT] [--only-files|--only-dirs] --files ID | --lsbom ID\n"
    "       pkgutil [--volume ROOT] --forget ID\n"
    "Reads and forgets the receipts of installer packages of the Mac OS X system below ROOT.\n";

struct Options {
    std::string volume = "/";
    std::string action;
    std::string argument;
    bool onlyFiles = false;
    bool onlyFolders = false;
};

/// An identifier is a part of a file's name, and must not become a path.
bool isIdentifier(const std::string& text) {
    return !text.empty() && text.find('/') == std::string::npos && text != "." && text != "..";
}

/// Only what is not there is no receipt: one that cannot be read is another matter.
int noReceipt(const Options& options, const Error& error) {
    if (error.kind != ErrorKind::NotFound)
        return printComplaint("pkgutil: " + error.message());
    return printComplaint("No receipt for '" + options.argument + "' found at '" + options.volume + "'.");
}

int listPackages(const FileManager& files, const Options& options) {
    const auto entries = files.contentsOfDirectoryAtPath(kReceipts);
    if (!entries)
        return entries.error().kind == ErrorKind::NotFound ? 0
                                                           : printComplaint("pkgutil: " + entries.error().message());
    std::vector<std::string> identifiers;
    for (const auto& entry : *entries) {
        if (pathExtension(entry.name) == "plist")
            identifiers.emplace_back(nameWithoutExtension(entry.name));
    }
    std::ranges::sort(identifiers);
    const std::regex wanted(options.argument.empty() ? ".*" : options.argument, std::regex::extended);
    for (const auto& identifier : identifiers) {
        if (identifier.find('\n') == std::string::npos && std::regex_match(identifier, wanted))
            std::puts(identifier.c_str());
    }
    return 0;
}

int showInfo(const FileManager& files, const Options& options) {
    const auto bytes = files.contentsAtPath(kReceipts + options.argument + ".plist", kLargestReceipt);
    if (!bytes)
        return noReceipt(options, bytes.error());
    const auto receipt = plist::parse(*bytes);
    if (!receipt)
        return printComplaint("pkgutil: " + options.argument + ".plist: " + receipt.error());
    const auto text = [&](const char* key) {
        const auto* found = receipt->findString(key);
        return found ? *found : std::string();
    };
    std::printf("package-id: %s\nversion: %s\nvolume: %s\nlocation: %s\n", text("PackageIdentifier").c_str(),
                text("PackageVersion").c_str(), options.volume.c_str(), text("InstallPrefixPath").c_str());
    if (const auto* date = receipt->find("InstallDate"); date && date->asDate())
        std::printf("install-time: %.0f\n", date->asDate()->seconds + kSecondsFrom1970To2001);
    return 0;
}

int listFiles(const FileManager& files, const Options& options) {
    const auto bytes = files.contentsAtPath(kReceipts + options.argument + ".bom", kLargestReceipt);
    if (!bytes)
        return noReceipt(options, bytes.error());
    const bool likeLsbom = options.action == "--lsbom";
    const auto listed = bom::read(*bytes, [&](const bom::Entry& entry) {
        const bool isFolder = entry.type == bom::EntryType::Directory;
        if ((isFolder && options.onlyFiles) || (!isFolder && options.onlyFolders))
            return;
        if (entry.path == "." && !likeLsbom)
            return;
        std::string line = likeLsbom && entry.path != "." ? "./" + entry.path : entry.path;
        line += '\n';
        std::fwrite(line.data(), 1, line.size(), stdout);
    });
    if (listed && listed->count == 0)
        return 0;
    return printComplaint("pkgutil: " + options.argument +
                          ".bom: " + (listed ? bom::describe(*listed) : listed.error()));
}

int forget(FileManager& files, const Options& options) {
    const std::string receipt = kReceipts + options.argument;
    const auto list = files.attributesOfItemAtPath(receipt + ".plist", Links::DontFollow);
    if (!list && !files.attributesOfItemAtPath(receipt + ".bom", Links::DontFollow))
        return noReceipt(options, list.error());
    files.removals().guard().protect(kReceipts);
    files.removals().refreshGuard();
    // The property list last: while it is there the package is known.
    for (const char* extension : {".bom", ".plist"}) {
        const auto removed = files.removeItemAtPath(receipt + extension);
        if (!removed && removed.error().kind != ErrorKind::NotFound)
            return printComplaint("pkgutil: " + removed.error().message());
    }
    std::printf("Forgot package '%s' on '%s'.\n", options.argument.c_str(), options.volume.c_str());
    return 0;
}

bool parse(const std::vector<std::string>& arguments, Options& options) {
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& word = arguments[i];
        const bool takesValue =
            word == "--pkg-info" || word == "--files" || word == "--lsbom" || word == "--forget" || word == "--volume";
        const bool hasValue = i + 1 < arguments.size() && !arguments[i + 1].starts_with("--");
        if (word == "--only-files") {
            options.onlyFiles = true;
        } else if (word == "--only-dirs") {
            options.onlyFolders = true;
        } else if (word == "--pkgs" || word == "--packages" || word.starts_with("--pkgs=")) {
            options.action = "--pkgs";
            options.argument = word.starts_with("--pkgs=") ? word.substr(7) : std::string();
        } else if (takesValue && hasValue && word == "--volume") {
            options.volume = arguments[++i];
        } else if (takesValue && hasValue && options.action.empty()) {
            options.action = word;
            options.argument = arguments[++i];
        } else {
            return false;
        }
    }
    return !options.action.empty();
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.size() == 1 && arguments[0] == "--help") {
        std::fputs(kUsage, stdout);
        return 0;
    }
    Options options;
    if (!parse(arguments, options)) {
        std::fputs(kUsage, stderr);
        return 1;
    }
    const auto files = FileManager::open(options.volume);
    if (!files)
        return printComplaint("pkgutil: " + files.error().message());
    try {
        int status = 1;
        if (options.action == "--pkgs")
            status = listPackages(**files, options);
        else if (!isIdentifier(options.argument))
            status = noReceipt(options, Error{ErrorKind::NotFound, {}, {}});
        else if (options.action == "--pkg-info")
            status = showInfo(**files, options);
        else if (options.action == "--forget")
            status = forget(**files, options);
        else
            status = listFiles(**files, options);
        return std::fflush(stdout) == 0 ? status : 1;
    } catch (const std::regex_error& error) {
        return printComplaint(std::string("pkgutil: ") + error.what());
    }
}
