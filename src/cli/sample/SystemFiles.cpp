#include "cli/sample/SampleBundles.h"
#include "cli/sample/SampleParts.h"

namespace sweeply::sample {

namespace {

struct Link {
    std::string_view path;
    std::string_view destination;
};

constexpr Link kLinks[] = {
    {"/etc", "private/etc"},
    {"/tmp", "private/tmp"},
    {"/var", "private/var"},
    {"/Volumes/Macintosh HD", "/"},
    // A Mac's own volume does not tell upper case from lower; this folder's name is written both ways.
    {"/Library/Internet Plug-ins", "Internet Plug-Ins"},
    {"/Users/sam/Library/Internet Plug-ins", "Internet Plug-Ins"},
};

constexpr std::string_view kFolders[] = {
    "/Library/Internet Plug-Ins",
    "/Users/sam/Library/Internet Plug-Ins",
    "/Users/Shared",
    "/bin",
    "/private/tmp",
    "/private/var/db",
    "/private/var/vm",
    "/sbin",
    "/usr/local",
};

constexpr Link kTexts[] = {
    {"/private/etc/hosts", "127.0.0.1\tlocalhost\n255.255.255.255\tbroadcasthost\n::1\tlocalhost\n"},
    {"/private/etc/shells", "/bin/bash\n/bin/sh\n/bin/zsh\n"},
    {"/private/var/db/.AppleSetupDone", ""},
    {"/Users/.localized", ""},
    {"/.hidden", "bin\nsbin\nusr\n"},
};

} // namespace

void writeSystem(SampleWriter& out) {
    for (std::string_view folder : kFolders)
        out.folder(std::string(folder));
    for (const auto& [path, destination] : kLinks)
        out.link(std::string(path), std::string(destination));
    for (const auto& [path, text] : kTexts)
        out.file(std::string(path), text);

    const std::string library = "/System/Library";
    out.propertyList(library + "/CoreServices/SystemVersion.plist",
                     dictionary({{"ProductBuildVersion", "10K549"},
                                 {"ProductCopyright", "1983-2011 Apple Inc."},
                                 {"ProductName", "Mac OS X"},
                                 {"ProductUserVisibleVersion", "10.6.8"},
                                 {"ProductVersion", "10.6.8"}}));
    const std::string finder = library + "/CoreServices/Finder.app";
    writeBundle(out, finder, {"com.apple.finder", "Finder", "Finder", "10.6.8", "FNDR", Slices::Intel});
    writeLocalisations(out, finder + "/Contents/Resources", Localisations::OldNames);
    writeFramework(out, library + "/Frameworks",
                   {"com.apple.WebKit", "WebKit", "WebKit", "6533.21", "FMWK", Slices::ThreeWay});
    writeProgram(out, "/mach_kernel", Slices::Intel, 200 * 1024);
    writeProgram(out, "/bin/ls", Slices::Intel, 4096);
    writeProgram(out, "/usr/bin/lipo", Slices::Intel, 4096);
}

} // namespace sweeply::sample
