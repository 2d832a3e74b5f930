#include "cli/sample/SampleBundles.h"
#include "cli/sample/SampleParts.h"

namespace sweeply::sample {

namespace {

struct Extension {
    std::string_view path;
    std::string_view identifier;
    std::string_view executable;
    Slices slices = Slices::PowerPCAndIntel32;
};

constexpr Extension kExtensions[] = {
    {"/Library/QuickTime/Northlight.component", "com.northbay.northlight", "Northlight"},
    // One plug-in for the whole machine and for the user alone: it is listed twice.
    {"/Library/Internet Plug-Ins/HarborView.plugin", "com.harborline.mail.view", "HarborView"},
    {"/Users/sam/Library/Internet Plug-Ins/HarborView.plugin", "com.harborline.mail.view", "HarborView"},
    {"/Library/Internet Plug-Ins/Shimmer.webplugin", "com.alpenglow.shimmer", "Shimmer", Slices::X86_64},
    {"/Library/QuickLook/Ledger.qlgenerator", "com.northbay.ledger.quicklook", "Ledger", Slices::Intel},
    {"/Users/sam/Library/QuickLook/Paper Trail.qlgenerator", "com.tidewater.papertrail.ql", "Paper Trail"},
    {"/Library/Contextual Menu Items/Copy Path.plugin", "org.example.copypath", "Copy Path"},
    {"/Library/Spotlight/Ledger.mdimporter", "com.northbay.ledger.importer", "Ledger"},
    {"/Library/InputManagers/Glimmer/Glimmer.bundle", "com.alpenglow.glimmer", "Glimmer"},
    {"/Users/sam/Library/iTunes/iTunes Plug-ins/Ripples.bundle", "com.alpenglow.ripples", "Ripples"},
    {"/Library/Address Book Plug-Ins/Dial.bundle", "org.example.dial", "Dial"},
    {"/Library/Screen Savers/Drift.saver", "com.alpenglow.drift", "Drift", Slices::ThreeWay},
    {"/Library/Dictionaries/Nautical Terms.dictionary", "com.harborline.dictionary", ""},
    {"/Users/sam/Library/Mail/Bundles/Sorter.mailbundle", "org.example.sorter", "Sorter", Slices::Intel},
    {"/Library/Services/Count Words.service", "org.example.countwords", "Count Words"},
    {"/Users/sam/Library/Services/Resize Pictures.workflow", "", ""},
    {"/Library/ScriptingAdditions/Numbers.osax", "org.example.numbers", "Numbers"},
    {"/Users/sam/Library/PreferencePanes/Tidy Keys.prefPane", "com.quillworks.tidykeys", "Tidy Keys"},
    {"/Library/PreferencePanes/Tides \"Live\".prefPane", "com.tidewater.tidespane", "Tides"},
};

struct Widget {
    std::string_view path;
    std::string_view identifier;
    std::string_view name;
};

constexpr Widget kWidgets[] = {
    {"/Library/Widgets/Stocks.wdgt", "com.apple.widget.stocks", "Stocks"},
    {"/Users/sam/Library/Widgets/Tides.wdgt", "com.tidewater.widget.tides", "Tides"},
    {"/Users/sam/Library/Widgets/Harbor Clock.wdgt", "com.harborline.widget.clock", "Harbor Clock"},
};

void writeWidget(SampleWriter& out, const Widget& widget) {
    const std::string folder = std::string(widget.path) + "/";
    const std::string page = std::string(widget.name) + ".html";
    out.propertyList(
        folder + "Info.plist",
        dictionary({{"CFBundleIdentifier", widget.identifier}, {"CFBundleName", widget.name}, {"MainHTML", page}}));
    out.file(folder + page, "<html><body>" + std::string(widget.name) + "</body></html>\n");
    for (const char* picture : {"Default.png", "Icon.png"})
        out.opaqueFile(folder + picture, 5000);
    for (const char* language : {"en", "fr", "ja"})
        out.file(folder + language + ".lproj/localizedStrings.js", "var localizedStrings = new Object;\n");
}

} // namespace

void writeExtensions(SampleWriter& out) {
    for (const Extension& extension : kExtensions) {
        const std::string path(extension.path);
        writeBundle(
            out, path,
            {extension.identifier, extension.executable, extension.executable, "1.0", "BNDL", extension.slices});
        writeLocalisations(out, path + "/Contents/Resources", Localisations::EnglishOnly);
    }
    for (const Widget& widget : kWidgets)
        writeWidget(out, widget);

    const std::string pane = std::string(kHome) + "/Library/PreferencePanes/Tidy Keys.prefPane/Contents/Resources/";
    writeBundle(out, pane + "Tidy Keys Daemon.app",
                {"com.quillworks.tidykeys.daemon", "Tidy Keys Daemon", "Tidy Keys Daemon", "1.0", "APPL"});
    const std::string broken = std::string(kHome) + "/Library/Widgets/Broken.wdgt/Info.plist";
    out.file(broken, "<plist><dict><key>CFBundleIdentifier</key>");

    const std::string support = "/Library/Application Support/";
    out.propertyList(support + "Growl/Tickets/Harbor Mail.growlTicket",
                     dictionary({{"ApplicationName", "Harbor Mail"}, {"Enabled", true}}), PropertyListForm::Binary);
    out.opaqueFile(support + "Ledger/Templates/Household.ledger", 9000);
    const std::string userSupport = std::string(kHome) + "/Library/Application Support/";
    out.opaqueFile(userSupport + "com.northbay.ledger/Accounts.db", 30000);
    out.opaqueFile(userSupport + "Paper Trail/Index/0001.idx", 16000);
    out.opaqueFile(userSupport + "Raft/state.db", 4000);
    out.opaqueFile(std::string(kHome) + "/Library/PDF Services/Paper Trail", 100);
}

} // namespace sweeply::sample
