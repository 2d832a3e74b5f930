#include "cli/sample/SampleParts.h"
#include "cli/sample/SampleWriter.h"

#include <string>

namespace sweeply::sample {

namespace {

struct Library {
    std::string_view path; ///< in the home folder
    unsigned photos;       ///< in its cache for music players; none leaves the cache's bookkeeping alone
};

// The last three are looked into by nobody: in a folder that holds no photos, and in a package of another program.
constexpr Library kLibraries[] = {
    {"Pictures/iPhoto Library", 24},
    {"Pictures/Regattas.photolibrary", 6},
    {"Pictures/Archive 2009.aplibrary", 8},
    {"Pictures/Never Synced", 0},
    {"Music/Album Covers", 3},
    {"Library/Photos", 2},
    {"Pictures/Slides.bundle", 2},
};

void writeLibrary(SampleWriter& out, const Library& library) {
    const std::string folder = std::string(kHome) + "/" + std::string(library.path) + "/";
    out.propertyList(folder + "AlbumData.xml", dictionary({{"Application Version", "8.1.2 (424)"},
                                                           {"Archive Path", folder.substr(0, folder.size() - 1)}}));
    out.opaqueFile(folder + "Originals/2010/Harbour.jpg", 60000);
    const std::string cache = folder + "iPod Photo Cache/";
    out.opaqueFile(cache + "Photo Database", 5000);
    out.propertyList(cache + "iPodInfo.plist", dictionary({{"Version", 2}}));
    if (library.photos > 0)
        out.opaqueFile(cache + ".DS_Store", 6148);
    for (unsigned i = 0; i < library.photos; ++i)
        out.opaqueFile(cache + "F" + std::to_string(10 + i % 8) + "/T" + std::to_string(700 + i) + ".ithmb", 30000);
}

} // namespace

void writePhotoLibraries(SampleWriter& out) {
    for (const Library& library : kLibraries)
        writeLibrary(out, library);
}

} // namespace sweeply::sample
