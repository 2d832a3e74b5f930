#include "cli/sample/SampleBundles.h"
#include "cli/sample/SampleParts.h"

namespace sweeply::sample {

namespace {

struct JunkFile {
    std::string_view path;
    std::size_t size; ///< bytes
};

constexpr JunkFile kFiles[] = {
    // A developer's folder that has been on other people's machines and memory sticks.
    {"/Users/sam/Projects/.DS_Store", 6148},
    {"/Users/sam/Projects/Sundial/.DS_Store", 6148},
    {"/Users/sam/Projects/Sundial/Sundial.xcodeproj/project.pbxproj", 14000},
    {"/Users/sam/Projects/Sundial/.svn/entries", 900},
    {"/Users/sam/Projects/Sundial/Legacy/CVS/Entries", 120},
    {"/Users/sam/Projects/Sundial/Pictures/Thumbs.db", 20000},
    {"/Users/sam/Projects/Sundial/Pictures/desktop.ini", 200},
    {"/Users/sam/Projects/Sundial/Pictures/Dial.png", 8000},
    {"/Users/sam/Projects/Sundial/._main.m", 4096},
    {"/Users/sam/Projects/Sundial/.Spotlight-V100/Store-V1/Stores/0.indexHead", 4096},
    {"/Users/sam/Projects/Sundial/build/Sundial.build/Release/Objects/main.o", 12000},
    // Folders in a trash, and a file right in it.
    {"/Users/sam/.Trash/Old Project/main.c", 3000},
    {"/Users/sam/.Trash/Old Project/notes/ideas.txt", 700},
    {"/Users/sam/.Trash/Screenshot.png", 50000},
    {"/.Trashes/501/Old backup/archive.tar", 90000},
    {"/.Trashes/501/letter.txt", 300},
    {"/.Spotlight-V100/Store-V1/Stores/0.store", 9000},
    {"/.DS_Store", 6148},
};

struct Source {
    std::string_view path;
    std::string_view text;
};

constexpr Source kSources[] = {
    {"/Users/sam/Projects/Sundial/main.m",
     "int main(int argc, char *argv[]) { return NSApplicationMain(argc, argv); }\n"},
    {"/Users/sam/Projects/Sundial/Sundial.h", "@interface Sundial : NSObject\n@end\n"},
    {"/Users/sam/Projects/Sundial/Geometry.hpp", "struct Angle { double degrees; };\n"},
};

} // namespace

void writeJunk(SampleWriter& out) {
    for (const auto& [path, size] : kFiles)
        out.opaqueFile(std::string(path), size);
    for (const auto& [path, text] : kSources)
        out.file(std::string(path), text);

    // The build's product holds what an application shipped by mistake would.
    const std::string product = std::string(kHome) + "/Projects/Sundial/build/Release/Sundial.app";
    writeBundle(out, product, {"org.example.sundial", "Sundial", "Sundial", "0.1", "APPL", Slices::ThreeWay});
    writeLocalisations(out, product + "/Contents/Resources", Localisations::Codes);
    out.file(product + "/Contents/Resources/Sundial.h", "@interface Sundial : NSObject\n@end\n");
    out.file(product + "/Contents/Resources/main.m", "int main(void);\n");
}

} // namespace sweeply::sample
