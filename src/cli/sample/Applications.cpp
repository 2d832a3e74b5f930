#include "cli/sample/SampleBundles.h"
#include "cli/sample/SampleParts.h"

#include <array>

namespace sweeply::sample {

namespace {

struct Application {
    std::string_view folder; ///< in "/Applications", without ".app"
    Bundle bundle;
    Localisations localisations = Localisations::OldNames;
};

// Between them: names with a space, both kinds of quotes and a decomposed accent, no name in the list, one slice only.
constexpr std::array kApplications{
    Application{"Ledger", {"com.northbay.ledger", "Ledger", "Ledger", "3.1.4", "APPL", Slices::PowerPCAndIntel32}},
    Application{"Paper Trail",
                {"com.tidewater.papertrail", "Paper Trail", "Paper Trail", "2.0", "APPL", Slices::ThreeWay, 40 * 1024}},
    Application{"Bob's \"Quick\" Notes",
                {"com.quillworks.quicknotes", "Quick Notes", "QuickNotes", "1.2", "APPL", Slices::ThreeWay},
                Localisations::Codes},
    Application{"Cafe\u0301 Menu",
                {"fr.pointdujour.cafemenu", "Cafe\u0301 Menu", "CafeMenu", "4.0b2", "APPL", Slices::FourWay},
                Localisations::Codes},
    Application{"Weather Vane", {"com.tidewater.vane", "", "vane", "0.9", "APPL", Slices::PowerPCAndIntel32}},
    Application{"Thin Air", {"com.alpenglow.thinair", "Thin Air", "Thin Air", "5.0.1", "APPL", Slices::X86_64}},
    Application{"iPhoto",
                {"com.apple.iPhoto", "iPhoto", "iPhoto", "8.1.2", "APPL", Slices::PowerPCAndIntel32, 60 * 1024}},
    Application{"Safari",
                {"com.apple.Safari", "Safari", "Safari", "5.0.5", "APPL", Slices::Intel, 60 * 1024},
                Localisations::Codes},
    Application{"Utilities/Terminal",
                {"com.apple.Terminal", "Terminal", "Terminal", "2.1.2", "APPL"},
                Localisations::EnglishOnly},
};

constexpr Bundle kMail{"com.harborline.mail", "Harbor Mail", "Harbor Mail", "1.5", "APPL", Slices::ThreeWay, 50 * 1024};
constexpr Bundle kMailHelper{"com.harborline.mail.reminder", "Harbor Reminder", "Harbor Reminder", "1.5", "APPL",
                             Slices::PowerPCAndIntel32};
constexpr Bundle kMailPlugin{"com.harborline.mail.view", "HarborView", "HarborView", "1.5", "NSPL", Slices::ThreeWay};
constexpr Bundle kKindling{"org.kindling.framework", "Kindling", "Kindling", "1.5", "FMWK",
                           Slices::ThreeWay,         30 * 1024};

/// What builders leave in an application: bookkeeping of the interface editor beside the interface itself.
void writeEditorFiles(SampleWriter& out, const std::string& resources) {
    const std::string nib = resources + "/English.lproj/Preferences.nib/";
    out.file(nib + "classes.nib",
             "{ IBClasses = ({CLASS = FirstResponder; LANGUAGE = ObjC; SUPERCLASS = NSObject; }); }\n");
    out.propertyList(nib + "info.nib", dictionary({{"IBFramework Version", "677"}, {"IBSystem Version", "9L31a"}}));
    out.opaqueFile(nib + "designable.nib", 9000);
    out.opaqueFile(nib + "keyedobjects.nib", 4000);
}

void writeApplication(SampleWriter& out, const Application& application, unsigned copy) {
    Bundle bundle = application.bundle;
    const std::string identifier = std::string(bundle.identifier) + (copy == 1 ? "" : std::to_string(copy));
    const std::string name = bundle.name.empty() ? "" : copyName(bundle.name, copy);
    bundle.identifier = identifier;
    bundle.name = name;
    const std::string path = "/Applications/" + copyName(application.folder, copy) + ".app";
    const std::string resources = path + "/Contents/Resources";
    writeBundle(out, path, bundle);
    out.opaqueFile(resources + "/Icon.icns", 8000);
    writeLocalisations(out, resources, application.localisations);
    if (application.localisations == Localisations::OldNames)
        writeEditorFiles(out, resources);
}

/// One with everything nested: a framework, a helper application and a plug-in that it has installed.
void writeMail(SampleWriter& out) {
    const std::string contents = "/Applications/Harbor Mail.app/Contents";
    writeBundle(out, "/Applications/Harbor Mail.app", kMail);
    writeLocalisations(out, contents + "/Resources", Localisations::OldNames);
    writeFramework(out, contents + "/Frameworks", kKindling);
    const std::string helper = contents + "/Resources/Harbor Reminder.app";
    writeBundle(out, helper, kMailHelper);
    writeLocalisations(out, helper + "/Contents/Resources", Localisations::Codes);
    writeBundle(out, contents + "/PlugIns/HarborView.plugin", kMailPlugin);
    out.file(contents + "/Resources/dependencies/data.dependency", "Kindling\n");
    out.file(contents + "/Resources/template.hpp", "struct Template;\n");
    out.file(contents + "/Resources/sync", "#!/bin/sh\nexit 0\n", 0755);
    out.opaqueFile(contents + "/CodeResources", 700);
}

void writeSpecialCases(SampleWriter& out) {
    // Slimmed before, as its marker says.
    writeBundle(out, "/Applications/Slim Jim.app",
                {"com.northbay.slimjim", "Slim Jim", "Slim Jim", "1.0", "APPL", Slices::PowerPCAndIntel32});
    out.file("/Applications/Slim Jim.app/.Clean", "");

    // A download that was broken off.
    const std::string halfDone = "/Applications/Half Done.app/Contents";
    out.file(halfDone + "/Info.plist",
             "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n<dict>\n\t<key>CFBu");
    out.file(halfDone + "/MacOS/Half Done", std::string_view("\xca\xfe\xba\xbe\0\0\0\x02\0\0", 10), 0755);
    out.file("/Applications/Utilities/Read Me.txt", "More tools are on the installation disc.\n");
}

} // namespace

void writeApplications(SampleWriter& out) {
    for (unsigned copy = 1; copy <= out.scale(); ++copy) {
        for (const Application& application : kApplications)
            writeApplication(out, application, copy);
    }
    writeMail(out);
    writeSpecialCases(out);
}

} // namespace sweeply::sample
