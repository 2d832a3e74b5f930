#include "appcore/sizes/DiskSizes.h"
#include "cli/Commands.h"
#include "cli/JsonOutput.h"
#include "cli/TargetPaths.h"
#include "cli/TextStyle.h"
#include "cli/sample/SampleVolume.h"
#include "formats/DisplayEscapes.h"
#include "formats/Utf8.h"
#include "platform/FileManager.h"
#include "platform/Localization.h"

#include <iostream>
#include <nlohmann/json.hpp>

namespace sweeply {

namespace {

/// The system that sizes are counted as: the one named, the target's own, or the newest known.
Result<SystemVersion> versionForSizes(const CommandLine& line, const FileManager& files) {
    if (line.target.osVersion) {
        if (const auto version = SystemVersion::fromProductVersion(*line.target.osVersion))
            return *version;
        return Failure(Error{ErrorKind::Other, {}, "--os: '" + *line.target.osVersion + "' is no version of Mac OS X"});
    }
    auto version = SystemVersion::read(files);
    if (!version && version.error().kind == ErrorKind::NotFound)
        return *SystemVersion::fromProductVersion("10.6");
    return version;
}

} // namespace

ExitCode runSize(const CommandLine& line) {
    const auto files = FileManager::open(line.target.root.value_or("/"));
    if (!files) {
        complain(files.error().message());
        return ExitCode::Usage;
    }
    const auto version = versionForSizes(line, **files);
    if (!version) {
        complain(version.error().message());
        return ExitCode::Usage;
    }
    const DiskSizes sizes(**files, *version);
    const auto style = styleFor(line, Terminal::ofThisProcess());
    ExitCode outcome = ExitCode::Done;
    std::uint64_t total = 0;
    Json list = Json::array();
    for (const auto& operand : line.operands) {
        const auto path = targetPath(**files, operand);
        const auto item = path ? (*files)->attributesOfItemAtPath(*path, Links::DontFollow) : Failure(path.error());
        if (!item) {
            complain(operand + ": " + item.error().reason);
            outcome = ExitCode::Usage;
            continue;
        }
        const std::uint64_t size = sizes.folderSizeAtPath(*path);
        total += size;
        if (line.wantsJson)
            list.push_back(
                {{"path", validUtf8(operand)}, {"size", size}, {"sizeText", stringSizeFromLong(size, sizes.units())}});
        else
            printSized(std::cout, stringSizeFromLong(size, sizes.units()), style.name(operand));
    }
    if (line.wantsJson)
        printJson({{"sizes", list}, {"total", total}, {"totalText", stringSizeFromLong(total, sizes.units())}});
    else if (line.operands.size() > 1)
        printSized(std::cout, stringSizeFromLong(total, sizes.units()), "total");
    return outcome;
}

ExitCode runSample(const CommandLine& line) {
    const auto written = writeSampleVolume(line.operands.front(), line.sampleScale);
    if (!written) {
        complain(written.error().message());
        return written.error().kind == ErrorKind::AlreadyExists ? ExitCode::Usage : ExitCode::Incomplete;
    }
    std::cout << formatText("%i files and %i folders, %@, in %@\n",
                            {written->files, written->folders, stringSizeFromLong(written->bytes, SizeUnits::Decimal),
                             escapedForDisplay(line.operands.front())});
    return ExitCode::Done;
}

} // namespace sweeply
