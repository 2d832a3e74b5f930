#include "cli/sample/SampleParts.h"
#include "cli/sample/SampleWriter.h"

#include <string>

namespace sweeply::sample {

namespace {

struct Cache {
    std::string_view folder; ///< in a caches folder
    unsigned files;
    unsigned size; ///< of the first file, bytes; the others are a little larger each
    unsigned filesInFolder;
};

constexpr Cache kUserCaches[] = {
    {"Foxglove/Profiles/x1k9.default/Cache", 120, 1500, 16},
    {"com.apple.Safari/Webpage Previews", 30, 9000, 100},
    {"com.apple.iTunes/Artwork", 24, 12000, 8},
    {"com.harborline.mail/Messages", 40, 2500, 10},
    {"com.northbay.ledger", 6, 20000, 100},
    {"com.tidewater.papertrail/Thumbnails", 36, 3500, 12},
    {"Paper Trail", 3, 700, 100},
    {"Metadata/Safari/History", 25, 300, 100},
    {"com.gonefishing.bait", 4, 5000, 100},
};

constexpr Cache kSystemCaches[] = {
    {"com.apple.ATS/501", 4, 60000, 100},
    {"com.northbay.updater", 5, 8000, 100},
    {"Desktop Pictures", 6, 15000, 100},
};

/// Entries directly in the user's caches folder, to have many of them.
constexpr unsigned kSingleFiles = 40;

// Each is one name: to a terminal, a shell or a decoder they are something else.
constexpr std::string_view kAwkwardNames[] = {
    "line\nbreak", "-rf",          "$(touch x)",   "`touch x`; touch x", "*",
    "\"quoted\"",  "it's",         "trailing ",    "back\\slash",        "no\xff\xfeutf8",
    "\x1b[31mred", "e\u0301toile", "\u00e9toile",  "\u65e5\u672c",       "~",
    "...",         ".DS_Store",    "--no-run-if-x"};

void writeCache(SampleWriter& out, const std::string& caches, const Cache& cache, unsigned copy) {
    const std::size_t end = cache.folder.find('/');
    const std::string top = copyName(cache.folder.substr(0, end), copy);
    const std::string folder =
        caches + top + (end == std::string_view::npos ? "" : std::string(cache.folder.substr(end)));
    for (unsigned i = 0; i < cache.files; ++i) {
        const std::string group =
            cache.files > cache.filesInFolder ? std::to_string(i / cache.filesInFolder) + "/" : "";
        out.opaqueFile(folder + "/" + group + std::to_string(100000 + i * 7919), cache.size + 37 * i);
    }
}

} // namespace

void writeCaches(SampleWriter& out) {
    const std::string home(kHome);
    const std::string user = home + "/Library/Caches/";
    for (unsigned copy = 1; copy <= out.scale(); ++copy) {
        for (const Cache& cache : kUserCaches)
            writeCache(out, user, cache, copy);
        for (const Cache& cache : kSystemCaches)
            writeCache(out, "/Library/Caches/", cache, copy);
        for (unsigned i = 0; i < kSingleFiles; ++i)
            out.opaqueFile(user + copyName("com.example.item" + std::to_string(i), copy) + ".cache", 200 + 90 * i);
    }
    out.opaqueFile(user + "com.apple.Safari/Cache.db", 1000 * 1000);
    out.file(user + "com.northbay.ledger/empty", "");
    for (std::string_view name : kAwkwardNames)
        out.opaqueFile(user + "Awkward names/" + std::string(name), 600);
    for (std::string_view name : kAwkwardNames)
        out.opaqueFile(user + std::string(name), 600);

    // Links to what is no cache: a cleaner that follows one deletes documents.
    out.link(user + "link to documents", "../../Documents");
    out.link(user + "com.tidewater.papertrail/pictures", home + "/Pictures");
    out.link(user + "far out", "../../../../../../../../../../etc");
    out.link(user + "dangling", "nowhere");
    out.link(user + "loop", "loop");

    out.opaqueFile("/Library/Caches/com.apple.Components2.SystemCache.Components", 70000);
    out.opaqueFile("/Library/Caches/.DS_Store", 6148);
    out.opaqueFile("/System/Library/Caches/com.apple.kext.caches/Startup/Extensions.mkext", 300000);
    out.opaqueFile("/private/var/folders/s1/s1mPle0FHkWqYB4U+++++TI/-Caches-/com.apple.dock.iconcache", 40000);
    out.opaqueFile("/private/var/folders/s1/s1mPle0FHkWqYB4U+++++TI/-Tmp-/sync.tmp", 100);
}

} // namespace sweeply::sample
