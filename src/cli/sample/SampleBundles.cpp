#include "cli/sample/SampleBundles.h"

#include "formats/MachO.h"

#include <span>
#include <vector>

namespace sweeply::sample {

namespace {

constexpr std::string_view kOldNames[] = {"English", "French", "German", "Japanese", "Spanish",
                                          "Italian", "Dutch",  "sv",     "zh_CN",    "pt_PT"};
constexpr std::string_view kCodes[] = {"en", "fr", "de", "ja", "es", "pt-BR", "zh-Hant", "nb", "ko", "ru"};
constexpr std::string_view kEnglish[] = {"English"};

std::span<const std::string_view> folderNames(Localisations names) {
    switch (names) {
    case Localisations::OldNames:
        return kOldNames;
    case Localisations::Codes:
        return kCodes;
    case Localisations::EnglishOnly:
        return kEnglish;
    }
    return {};
}

std::vector<std::string_view> sliceNames(Slices slices) {
    switch (slices) {
    case Slices::None:
        return {};
    case Slices::X86_64:
        return {"x86_64"};
    case Slices::Intel:
        return {"i386", "x86_64"};
    case Slices::PowerPCAndIntel32:
        return {"ppc", "i386"};
    case Slices::ThreeWay:
        return {"ppc", "i386", "x86_64"};
    case Slices::FourWay:
        return {"ppc7400", "ppc64", "i386", "x86_64"};
    }
    return {};
}

plist::Value infoOf(const Bundle& bundle) {
    plist::Dictionary info;
    info.set("CFBundleDevelopmentRegion", "English");
    const std::pair<std::string_view, std::string_view> texts[] = {
        {"CFBundleExecutable", bundle.executable}, {"CFBundleIdentifier", bundle.identifier},
        {"CFBundleInfoDictionaryVersion", "6.0"},  {"CFBundleName", bundle.name},
        {"CFBundlePackageType", bundle.type},      {"CFBundleShortVersionString", bundle.version},
        {"CFBundleVersion", bundle.version},
    };
    for (const auto& [key, text] : texts) {
        if (!text.empty())
            info.set(key, text);
    }
    return info;
}

} // namespace

void writeProgram(SampleWriter& out, const std::string& path, Slices slices, std::uint32_t codeSize) {
    std::vector<const macho::Architecture*> list;
    for (std::string_view name : sliceNames(slices))
        list.push_back(macho::findArchitecture(name));
    if (list.size() == 1)
        out.file(path, macho::executable(*list.front(), codeSize), 0755);
    else if (!list.empty())
        out.file(path, macho::universalExecutable(list, codeSize), 0755);
}

void writeBundle(SampleWriter& out, const std::string& path, const Bundle& bundle) {
    const std::string contents = path + "/Contents";
    out.propertyList(contents + "/Info.plist", infoOf(bundle));
    out.file(contents + "/PkgInfo", std::string(bundle.type) + "????");
    if (!bundle.executable.empty())
        writeProgram(out, contents + "/MacOS/" + std::string(bundle.executable), bundle.slices, bundle.codeSize);
}

void writeFramework(SampleWriter& out, const std::string& folder, const Bundle& bundle) {
    const std::string name(bundle.name);
    const std::string framework = folder + "/" + name + ".framework";
    const std::string version = framework + "/Versions/A";
    writeProgram(out, version + "/" + name, bundle.slices, bundle.codeSize);
    out.file(version + "/Headers/" + name + ".h",
             "#import <Cocoa/Cocoa.h>\n#import <" + name + "/" + name + "Core.h>\n");
    out.file(version + "/Headers/" + name + "Core.h", "extern NSString *const " + name + "Version;\n");
    out.propertyList(version + "/Resources/Info.plist", infoOf(bundle), PropertyListForm::Binary);
    writeLocalisations(out, version + "/Resources", Localisations::Codes);
    out.link(version + "/Resources/fr_CA.lproj", "fr.lproj");
    out.link(framework + "/Versions/Current", "A");
    for (const std::string& top : {name, std::string("Headers"), std::string("Resources")})
        out.link(framework + "/" + top, "Versions/Current/" + top);
}

void writeLocalisations(SampleWriter& out, const std::string& resources, Localisations names) {
    for (std::string_view name : folderNames(names)) {
        const std::string folder = resources + "/" + std::string(name) + ".lproj/";
        out.opaqueFile(folder + "Localizable.strings", 2000 + 300 * name.size());
        out.file(folder + "InfoPlist.strings", "NSHumanReadableCopyright = \"2010\";\n");
        out.opaqueFile(folder + "MainMenu.nib/keyedobjects.nib", 6000);
    }
}

} // namespace sweeply::sample
