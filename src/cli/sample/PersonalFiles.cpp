#include "cli/sample/SampleParts.h"
#include "cli/sample/SampleWriter.h"

#include <string>

namespace sweeply::sample {

namespace {

struct PersonalFile {
    std::string_view path; ///< in the home folder
    std::size_t size;      ///< bytes
};

// Nothing may ever remove or change one of these.
constexpr PersonalFile kFiles[] = {
    {"Desktop/Read this first.rtf", 2400},
    {"Documents/Important (do not lose).txt", 1200},
    {"Documents/Taxes 2010.pdf", 180000},
    {"Documents/Novel/Chapter 1.rtf", 40000},
    {"Documents/Novel/Chapter 2.rtf", 38000},
    {"Documents/Caches/Where the geocaches are.kml", 5000},
    {"Documents/Logs/Ship's log 1998.log", 30000},
    {"Downloads/Raft-2.1.dmg", 250000},
    {"Movies/Regatta.mov", 400000},
    {"Music/iTunes/iTunes Library", 20000},
    {"Music/iTunes/iTunes Music/Sea Shanties/Leave Her, Johnny.m4a", 300000},
    {"Pictures/Lighthouse.jpg", 120000},
    {"Public/Drop Box/.localized", 0},
    {"Sites/index.html", 900},
};

} // namespace

void writePersonalFiles(SampleWriter& out) {
    const std::string home = std::string(kHome) + "/";
    for (const auto& [path, size] : kFiles)
        out.opaqueFile(home + std::string(path), size);
    out.opaqueFile("/Users/Shared/Crew list.txt", 800);
    out.file(home + ".CFUserTextEncoding", "0:0");
    out.file(home + ".bash_history", "ls\ncd Documents\n");
}

} // namespace sweeply::sample
