#include "cli/sample/SampleVolume.h"

#include "cli/sample/SampleParts.h"
#include "cli/sample/SampleWriter.h"
#include "platform/FileManager.h"

#include <filesystem>

namespace sweeply {

namespace {

/// In the order of writing: receipts list what applications and extensions have put on the disk.
constexpr sample::Part kParts[] = {
    sample::writeSystem,         sample::writeApplications, sample::writeExtensions, sample::writeLaunchItems,
    sample::writePreferences,    sample::writeCaches,       sample::writeLogs,       sample::writePersonalFiles,
    sample::writePhotoLibraries, sample::writeJunk,         sample::writeReceipts,
};

} // namespace

Result<SampleTotals> writeSampleVolume(const std::string& hostDirectory, unsigned scale) {
    if (scale < 1 || scale > kLargestSampleScale)
        return Failure(Error{ErrorKind::Other, "",
                             "a sample's scale must be between 1 and " + std::to_string(kLargestSampleScale)});
    std::error_code failure;
    std::filesystem::create_directories(hostDirectory, failure);
    if (failure)
        return Failure(systemError(failure.value(), hostDirectory));
    auto files = FileManager::open(hostDirectory);
    if (!files)
        return Failure(files.error());
    const auto present = (*files)->contentsOfDirectoryAtPath("/");
    if (!present)
        return Failure(Error{present.error().kind, hostDirectory, present.error().reason});
    if (!present->empty())
        return Failure(Error{ErrorKind::AlreadyExists, hostDirectory,
                             "the folder is not empty; a sample volume is written into a new or an empty one only"});

    sample::SampleWriter writer(**files, scale);
    for (const sample::Part part : kParts)
        part(writer);
    if (writer.failure())
        return Failure(Error{writer.failure()->kind, hostDirectory + writer.failure()->path, writer.failure()->reason});
    return writer.totals();
}

} // namespace sweeply
